"use strict";
// Rows, balloons and parts of one item carry the same data-item; pointing at any of them lights up all of them.
const rows = [...document.querySelectorAll("tbody tr")];
const sheets = [...document.querySelectorAll(".sheets svg")];
const search = document.querySelector("input");
const count = document.querySelector("output");
let pinned = "";

function show(item) {
  for (const element of document.querySelectorAll("[data-item]")) {
    element.classList.toggle("lit", item !== "" && element.dataset.item === item);
  }
  for (const sheet of sheets) sheet.classList.toggle("aside", item !== "" && sheet.querySelector(".part.lit") !== null);
  for (const row of rows) row.setAttribute("aria-selected", String(item !== "" && row.dataset.item === item));
}

function pin(item) {
  pinned = item;
  show(pinned);
}

function itemOf(target) {
  const element = target.closest ? target.closest("[data-item]") : null;
  return element ? element.dataset.item : "";
}

function visibleRows() {
  return rows.filter((row) => !row.hidden);
}

function filter() {
  const words = search.value.toLowerCase().split(/\s+/).filter((word) => word !== "");
  for (const row of rows) row.hidden = !words.every((word) => row.textContent.toLowerCase().includes(word));
  const left = visibleRows();
  const said = count.dataset.count.replace("{0}", left.length).replace("{1}", rows.length);
  count.textContent = left.length === rows.length ? "" : said;
  pin(words.length > 0 && left.length === 1 ? left[0].dataset.item : "");
}

document.addEventListener("pointerover", (event) => show(itemOf(event.target) || pinned));
document.addEventListener("pointerleave", () => show(pinned));
document.addEventListener("click", (event) => {
  if (event.target === search) return;
  const item = itemOf(event.target);
  pin(item === pinned ? "" : item);
  const row = rows.find((candidate) => candidate.dataset.item === item);
  if (row && !row.contains(event.target)) row.scrollIntoView({ block: "nearest" });
});
search.addEventListener("input", filter);

document.addEventListener("focusin", (event) => {
  const item = itemOf(event.target);
  if (item !== "") pin(item);
});
document.addEventListener("keydown", (event) => {
  if (event.key === "/" && event.target !== search) {
    search.focus();
    event.preventDefault();
  } else if (event.key === "Escape") {
    search.value = "";
    filter();
    document.activeElement.blur();
  } else if (event.key === "ArrowDown" || event.key === "ArrowUp") {
    const list = visibleRows();
    const at = list.indexOf(document.activeElement.closest("tr"));
    const next = event.key === "ArrowDown" ? at + 1 : at < 0 ? list.length - 1 : at - 1;
    if (next < 0) search.focus();
    else if (next < list.length) list[next].focus();
    event.preventDefault();
  }
});
