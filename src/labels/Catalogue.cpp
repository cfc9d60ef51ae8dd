#include "labels/Catalogue.h"

#include <du/Localizer.h>

namespace zrcallouts {

std::string CatalogueText(const char* message) {
  std::string text;
  du::Localizer(kCatalogue).LocalizeMessage(message, text);
  return text;
}

}  // namespace zrcallouts
