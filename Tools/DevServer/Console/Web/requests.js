// What was asked, what is wrong with it, and what became of it.
import {get} from "./api.js";
import {chip, choice, el, field, heading, mono, nothing, show} from "./dom.js";
import {clock, link, short} from "./text.js";

function request(line) {
  const problems = line.problems || [], faults = line.faults || [];
  const more = [line.refusal && `not taken: ${line.refusal}`,
    line.position !== undefined && `from ${line.position}, ${line.bytes} bytes`,
    line.carried_out !== undefined && `the order ${line.carried_out} was carried out and is taken back`,
    ...(line.notes || [])].filter((text) => text);
  return el("li", {class: problems.length > 0 ? "request bad" : "request"},
    el("time", {}, clock(line.time)),
    el("b", {}, line.kind + (line.number ? ` #${line.number}` : "")),
    line.status !== undefined && chip(line.status >= 400 ? "warning" : "plain", line.status),
    line.device && el("a", {href: link("device", line.device), title: line.device}, mono(short(line.device, 12))),
    line.upload_id && mono(line.upload_id),
    line.client && el("span", {}, line.client),
    faults.map((fault) => chip("note", fault)),
    more.map((text) => el("span", {class: "more"}, text)),
    problems.length > 0 && el("ul", {class: "problems"}, problems.map((problem) => el("li", {}, problem))),
    line.target && el("code", {class: "target"}, `${line.method || ""} ${line.target}`));
}

export function requestList(lines) {
  return lines.length === 0 ? nothing("None yet.") : el("ul", {class: "requests"}, lines.map(request));
}

export async function requests(place) {
  const list = el("div");
  let all = [], shown = "all";
  const filter = {
    all: () => true,
    problems: (line) => (line.problems || []).length > 0,
    config: (line) => line.kind === "config",
    traceids: (line) => line.kind === "traceids",
    upload: (line) => line.kind === "upload",
    modules: (line) => line.kind === "modules" || line.kind === "control",
  };
  const draw = () => show(list, requestList(all.filter(filter[shown])));
  const names = [["all", "all"], ["problems", "that break the protocol"], ["config", "configuration"],
    ["traceids", "trace ids"], ["upload", "uploads"], ["modules", "changes made here"]];
  place.append(heading("Requests"), el("div", {class: "filters"},
    field("Show", choice(names, shown, (event) => {
      shown = event.target.value;
      draw();
    }))), list);
  const refresh = async () => {
    all = await get("requests");
    draw();
  };
  await refresh();
  return refresh;
}
