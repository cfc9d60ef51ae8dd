#pragma once
// Where the private fields of a class lie, without making the test a friend of it.

#include <cstddef>
#include <type_traits>
#include <vector>

namespace zrcallouts {

struct FieldPlace {
  std::size_t offset = 0, size = 0, alignment = 0;
};

template <class Class>
struct FieldsOf {};

template <class Class, class Field>
FieldPlace PlaceOf(Field Class::*field) {
  alignas(Class) static std::byte storage[sizeof(Class)];  // only addresses in it are taken; no object is needed
  const auto* object = reinterpret_cast<const Class*>(storage);
  const auto* address = reinterpret_cast<const std::byte*>(&(object->*field));
  return {static_cast<std::size_t>(address - storage), sizeof(Field), alignof(Field)};
}

/// Names of private members may stand in an explicit instance of a template, where access is not checked: `template
/// struct FieldOrder<Class, &Class::first_, ...>;` defines PlacesOf(FieldsOf<Class>), declared beforehand.
template <class Class, auto... Fields>
struct FieldOrder {
  friend std::vector<FieldPlace> PlacesOf(FieldsOf<Class>) { return {PlaceOf<Class>(Fields)...}; }
};

}  // namespace zrcallouts
