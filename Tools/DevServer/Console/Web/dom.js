// Makes elements. All text goes through text nodes: what a device sends is never markup.

// el("p", {class: "note"}, "text", other): a property that begins with "on" is a listener, one that is null or false is
// left out, and children that are null or false are too.
export function el(name, properties = {}, ...children) {
  const element = document.createElement(name);
  for (const [key, value] of Object.entries(properties)) {
    if (value === null || value === undefined || value === false) continue;
    if (key.startsWith("on")) element.addEventListener(key.slice(2), value);
    else if (key === "value") element.value = value;
    else element.setAttribute(key, value === true ? "" : value);
  }
  add(element, children);
  return element;
}

function add(element, children) {
  for (const child of children.flat(Infinity)) {
    if (child === null || child === undefined || child === false) continue;
    element.append(child instanceof Node ? child : document.createTextNode(String(child)));
  }
}

// Shows other children. What the reader has opened stays open, and the focus stays where it was: elements are known again
// by their "data-key".
export function show(region, ...children) {
  const open = new Set([...region.querySelectorAll("details[data-key][open]")].map((at) => at.dataset.key));
  const focused = region.contains(document.activeElement) ? document.activeElement.dataset.key : undefined;
  region.replaceChildren();
  add(region, children);
  for (const details of region.querySelectorAll("details[data-key]"))
    if (open.has(details.dataset.key)) details.open = true;
  if (focused === undefined) return;
  for (const element of region.querySelectorAll("[data-key]"))
    if (element.dataset.key === focused) element.focus({preventScroll: true});
}

// A table whose rows become cards on a narrow screen; the roles keep it a table for who hears it. A cell is a child, or a
// list of them.
export function table(headings, rows) {
  return el("table", {class: "stack", role: "table"},
    el("thead", {role: "rowgroup"}, el("tr", {role: "row"},
      headings.map((heading) => el("th", {role: "columnheader", scope: "col"}, heading)))),
    el("tbody", {role: "rowgroup"}, rows.map((cells) => el("tr", {role: "row"}, cells.map((cell, i) =>
      el("td", {role: "cell", "data-label": headings[i]}, el("div", {}, cell)))))));
}

export const chip = (kind, text) => el("span", {class: `chip ${kind}`}, text);
export const mono = (text) => el("code", {}, text);
export const nothing = (...text) => el("p", {class: "nothing"}, ...text);

export function heading(title, ...beside) {
  return el("div", {class: "heading"}, el("h1", {}, title), ...beside);
}

export function field(label, control, hint) {
  return el("label", {class: "field"}, el("span", {}, label), control, hint && el("small", {}, hint));
}

export function choice(options, value, onchange, properties = {}) {
  return el("select", {...properties, onchange},
    options.map(([key, text]) => el("option", {value: key, selected: key === value}, text)));
}
