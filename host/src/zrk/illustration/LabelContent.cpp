#include <zrk/illustration/LabelContent.h>

namespace zrk::illustration {

LabelContent::LabelContent() = default;

LabelContent::LabelContent(const std::string& literal, const TextProperties& properties)
    : text(literal), textProperties(properties) {}

LabelContent::LabelContent(const std::string& group, const std::string& propertyName, const TextProperties& properties)
    : type(1), text(group), name(propertyName), textProperties(properties) {}

LabelContent::LabelContent(const LabelContent& other) = default;

LabelContent::~LabelContent() = default;

}  // namespace zrk::illustration
