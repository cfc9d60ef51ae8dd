#pragma once

#include <cstdint>
#include <string>

#include <du/Export.h>
#include <du/RefCounted.h>
#include <zrk/illustration/TextProperties.h>

namespace zrk::illustration {

/// One piece of a label: literal text or a reference to a property.
class ZR_HOST_API LabelContent : public virtual du::RefCounted {
public:
  LabelContent();
  /// A literal piece.
  LabelContent(const std::string& literal, const TextProperties& properties);
  /// A property piece.
  LabelContent(const std::string& group, const std::string& propertyName, const TextProperties& properties);
  LabelContent(const LabelContent& other);
  ~LabelContent() override;

  std::uint32_t type = 0;         ///< 0 literal text, 1 property reference
  std::string text;               ///< the literal text, or the property group
  std::string name;               ///< the property name
  std::string display;            ///< "Name" shows the property's name, anything else its value
  std::string level;              ///< "Parent" or "Root"; anything else is the part itself
  TextProperties textProperties;  ///< lettering of the piece
};

}  // namespace zrk::illustration
