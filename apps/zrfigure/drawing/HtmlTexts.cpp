#include "drawing/HtmlTexts.h"

#include <algorithm>
#include <iterator>

namespace zrfigure {
namespace {

constexpr HtmlTexts kTexts[] = {
    {"en", "Search parts", "{0} of {1}",
     "Point at a part, a balloon or a row. Arrow keys walk the list, / searches, Esc clears.",
     "Arrow keys walk the list, / searches, Esc clears."},
    {"de", "Teile suchen", "{0} von {1}",
     "Auf ein Teil, eine Positionsnummer oder eine Zeile zeigen. Pfeiltasten gehen durch die Liste, / sucht, Esc setzt "
     "zurück.",
     "Pfeiltasten gehen durch die Liste, / sucht, Esc setzt zurück."},
    {"fr", "Rechercher une pièce", "{0} sur {1}",
     "Pointez une pièce, un repère ou une ligne. Les flèches parcourent la liste, / lance la recherche, Échap "
     "l’efface.",
     "Les flèches parcourent la liste, / lance la recherche, Échap l’efface."},
    {"ja", "部品を検索", "{1} 件中 {0} 件",
     "部品、バルーン、または行を指してください。矢印キーで一覧を移動、/ で検索、Esc で解除します。",
     "矢印キーで一覧を移動、/ で検索、Esc で解除します。"},
};

}  // namespace

const HtmlTexts& HtmlTextsIn(const std::string& language) {
  const auto* const found =
      std::ranges::find_if(kTexts, [&](const HtmlTexts& texts) { return language == texts.language; });
  return found == std::end(kTexts) ? kTexts[0] : *found;
}

}  // namespace zrfigure
