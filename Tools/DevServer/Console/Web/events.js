// What games report through the data plugin.
import {get} from "./api.js";
import {chip, choice, el, field, heading, mono, nothing, show} from "./dom.js";

export const noEvents = () => nothing("No events. A game on this machine that loads the sample plugin Pell reports here with ",
  mono("PELL_EVENTS"), " set to a file ", mono("events/NAME.jsonl"), " of the server's folder.");

const valueOf = (field) => field.text !== undefined ? String(field.text) : String(field.int);

const few = 8;  // fields that are shown at once

function event(line) {
  const fields = el("dl", {class: "fields"}, line.fields.map((at) =>
    el("div", {}, el("dt", {}, String(at.key)), el("dd", {}, valueOf(at) === "" ? "–" : valueOf(at)))));
  const name = line.fields.find((at) => at.key === "name");
  return el("li", {class: "event"},
    el("b", {}, line.event), name && el("span", {}, valueOf(name)),
    chip("plain", `source ${line.source}`), el("small", {}, `${line.file}:${line.number}`),
    line.fields.length <= few ? fields
      : el("details", {"data-key": `${line.file}:${line.number}`}, el("summary", {}, `${line.fields.length} fields`), fields));
}

export async function events(place) {
  const list = el("div");
  const text = el("input", {type: "search", oninput: () => draw(), placeholder: "name, key or value"});
  let read = {files: [], events: []}, file = "";
  const files = el("span");
  const matches = (line) => (!file || line.file === file) && (text.value === "" ||
    JSON.stringify([line.event, line.fields]).toLowerCase().includes(text.value.toLowerCase()));
  const draw = () => {
    const found = read.events.filter(matches).reverse();
    show(list,
      read.cut && el("p", {class: "hint"}, "Only the newest are shown."),
      read.broken > 0 && el("p", {class: "hint"}, `${read.broken} lines are no events.`),
      read.events.length === 0 ? noEvents() : found.length === 0 ? nothing("None of them.")
        : el("ul", {class: "events"}, found.map(event)));
  };
  place.append(heading("Events"), el("div", {class: "filters"}, files, field("Find", text)), list);
  const refresh = async () => {
    read = await get("events");
    show(files, field("File", choice([["", "all"], ...read.files.map((name) => [name, name])], file, (at) => {
      file = at.target.value;
      draw();
    }, {"data-key": "file"})));
    draw();
  };
  await refresh();
  return refresh;
}
