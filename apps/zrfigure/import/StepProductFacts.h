#pragma once
// What a STEP file says about a product and the document model of the CAD library does not keep. Uses CAD library
// types; included by sources of this folder only.

#include <STEPCAFControl_Reader.hxx>
#include <map>
#include <string>

namespace zrfigure {

/// Identifier, name and user-defined properties of one product as they stand in the STEP file.
struct StepProductFacts {
  std::string id;
  std::string name;
  std::map<std::string, std::string> properties;
};

/// By label entry ("0:1:1:3") of the document; products without a label are left out.
using StepProductFactsByEntry = std::map<std::string, StepProductFacts>;

/// Facts of all products that `reader` has transferred, those of externally referenced files included. Validation
/// properties are not in it; material and density stand under "material" and "density".
[[nodiscard]] StepProductFactsByEntry CollectStepProductFacts(const STEPCAFControl_Reader& reader);

}  // namespace zrfigure
