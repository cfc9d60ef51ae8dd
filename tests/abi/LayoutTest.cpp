// What programs compiled against the headers rely on: the order of virtual operations, of fields, of enumerators.

#include <cxxabi.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>

#include "FieldOrder.h"
#include "zrcallouts/Align.h"
#include "zrcallouts/Align2D.h"
#include "zrcallouts/CalloutGenerator.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

std::vector<FieldPlace> PlacesOf(FieldsOf<Callouts>);
std::vector<FieldPlace> PlacesOf(FieldsOf<CalloutGenerator>);
std::vector<FieldPlace> PlacesOf(FieldsOf<Align>);
std::vector<FieldPlace> PlacesOf(FieldsOf<Align2D>);

template struct FieldOrder<Callouts, &Callouts::pickRequestCount_, &Callouts::combineForSamePart_,
                           &Callouts::drawOneForSamePart_, &Callouts::force2DArrowheads_, &Callouts::firstBackground_,
                           &Callouts::secondBackground_, &Callouts::thirdBackground_, &Callouts::template_,
                           &Callouts::itemList_, &Callouts::itemsListObserver_, &Callouts::worldObserver_,
                           &Callouts::callouts_, &Callouts::idMap_, &Callouts::symbolAnnotations_,
                           &Callouts::insetTable_, &Callouts::insetObservers_, &Callouts::applicationObserver_,
                           &Callouts::treeObserver_, &Callouts::annoSetTableObserver_>;
template struct FieldOrder<
    CalloutGenerator, &CalloutGenerator::engine_, &CalloutGenerator::created_, &CalloutGenerator::candidates_,
    &CalloutGenerator::view_, &CalloutGenerator::scene_, &CalloutGenerator::itemList_,
    &CalloutGenerator::variantsCount_, &CalloutGenerator::plainCategories_, &CalloutGenerator::propertyCategories_,
    &CalloutGenerator::itemCategories_, &CalloutGenerator::plainCurrent_, &CalloutGenerator::propertyCurrent_,
    &CalloutGenerator::itemCurrent_, &CalloutGenerator::needsProperty_, &CalloutGenerator::plain_,
    &CalloutGenerator::needsItemList_>;
template struct FieldOrder<Align, &Align::mode_, &Align::distribute_, &Align::view_, &Align::operation_, &Align::range_,
                           &Align::spacing_, &Align::axes_, &Align::lineStart_, &Align::lineEnd_, &Align::pageBox_,
                           &Align::pageScale_, &Align::labelsOutsidePage_, &Align::pipeline_, &Align::context_>;
template struct FieldOrder<Align2D, &Align2D::mode_, &Align2D::view_, &Align2D::range_, &Align2D::primary_,
                           &Align2D::distribute_, &Align2D::axes_, &Align2D::line_, &Align2D::pageSize_,
                           &Align2D::labelsOutsidePage_>;

namespace {

/// Each field begins where the one before leaves off: none changed places and none came between.
template <class Class>
void ExpectFieldsInOrder(std::size_t first) {
  const std::vector<FieldPlace> fields = PlacesOf(FieldsOf<Class>());
  std::size_t end = first;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const auto& [offset, size, alignment] = fields[i];
    EXPECT_EQ(offset, (end + alignment - 1) / alignment * alignment) << typeid(Class).name() << ", field " << i;
    end = offset + size;
  }
}

TEST(Layout, FieldsKeepTheirOrder) {
  ExpectFieldsInOrder<Callouts>(PlacesOf(FieldsOf<Callouts>())[0].offset);
  ExpectFieldsInOrder<CalloutGenerator>(PlacesOf(FieldsOf<CalloutGenerator>())[0].offset);
  constexpr std::size_t kTableAndReference = 2 * sizeof(void*);  // the reference is first; no pointer to it exists
  ExpectFieldsInOrder<Align>(kTableAndReference);
  ExpectFieldsInOrder<Align2D>(kTableAndReference);
}

std::string Demangled(const char* name) {
  const std::unique_ptr<char, decltype(&std::free)> text(abi::__cxa_demangle(name, nullptr, nullptr, nullptr),
                                                         &std::free);
  return text ? text.get() : name;
}

/// Names of the functions in the primary table of a class, a line each, as the loaded library has them. The table is
/// offsets, the type, then the functions; behind these come offsets of the next table.
std::string SlotsOf(const std::string& className) {
  const void* type = dlsym(RTLD_DEFAULT, ("_ZTI" + className).c_str());
  const auto* entry = static_cast<void* const*>(dlsym(RTLD_DEFAULT, ("_ZTV" + className).c_str()));
  if (type == nullptr || entry == nullptr) return "no table of " + className + "\n";
  while (*entry != type) ++entry;
  std::string slots = Demangled(className.c_str()) + "\n";
  for (Dl_info info{}; dladdr(*++entry, &info) != 0 && info.dli_saddr == *entry;) {
    slots += "  " + Demangled(info.dli_sname) + "\n";
  }
  return slots;
}

TEST(Layout, VirtualOperationsKeepTheirSlots) {
  std::ifstream file(ZR_SOURCE_DIR "/tests/abi/slots.txt");
  const std::string listed{std::istreambuf_iterator<char>(file), {}};
  std::string found;
  for (const char* name : {"N10zrcallouts8CalloutsE", "N10zrcallouts16CalloutGeneratorE", "N10zrcallouts5AlignE",
                           "N10zrcallouts7Align2DE", "N10zrcallouts35CalloutsDrawWhenHiddenOperationStepE"}) {
    found += SlotsOf(name);
  }
  EXPECT_EQ(listed, found);
}

TEST(Layout, ModesKeepTheirValues) {
  const std::vector<Align_Mode> modes{MinX,    CenterX, MaxX,       MinY,       MaxY,       CenterY,
                                      SpreadX, SpreadY, AlongAxisX, AlongAxisY, AlongAxisZ, AlongLine};
  for (std::size_t i = 0; i < modes.size(); ++i) EXPECT_EQ(static_cast<std::size_t>(modes[i]), i);
}

}  // namespace
}  // namespace zrcallouts
