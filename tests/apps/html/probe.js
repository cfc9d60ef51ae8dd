// Runs in the page as its last script: does what a reader does and puts what the page shows into its title.
const lit = (kind) => [...document.querySelectorAll(`svg .${kind}.lit`)].map((e) => e.dataset.item);
const litRows = () => rows.filter((row) => row.classList.contains("lit")).map((row) => row.dataset.item);
const press = (key) => document.activeElement.dispatchEvent(new KeyboardEvent("keydown", { key, bubbles: true }));
const hover = (element) => element.dispatchEvent(new PointerEvent("pointerover", { bubbles: true }));
const all = (items, item) => items.length > 0 && items.every((each) => each === item);
const failed = [];
const expect = (what, truth) => truth || failed.push(what);

for (const row of rows) {
  const item = row.dataset.item;
  hover(row);
  expect(`row ${item} lights its balloon`, all(lit("callout"), item));
  const parts = document.querySelectorAll(`svg .part[data-item="${CSS.escape(item)}"]`);
  expect(`row ${item} lights its parts`, all(lit("part"), item) && lit("part").length === parts.length);
  hover(parts[0]);
  expect(`part of ${item} lights its row`, all(litRows(), item));
}
hover(document.body);
expect("nothing stays lit", litRows().length === 0 && lit("part").length === 0);
press("ArrowDown");
press("ArrowDown");
expect("arrow keys walk the list", document.activeElement === rows[1] && all(litRows(), rows[1].dataset.item));
press("/");
expect("/ goes to the search", document.activeElement === search);
search.value = rows[4].cells[2].textContent.toUpperCase();
search.dispatchEvent(new Event("input"));
expect("the search leaves one row and pins it", visibleRows().length === 1 && all(litRows(), rows[4].dataset.item));
press("Escape");
expect("Escape brings all back", visibleRows().length === rows.length && litRows().length === 0);
document.title = failed.length === 0 ? `${rows.length} rows, all right` : failed.join("; ");
