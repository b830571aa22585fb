// What devices have sent, and the lines of the logs in it.
import {get} from "./api.js";
import {chip, choice, el, field, heading, mono, nothing, show, table} from "./dom.js";
import {counted, link, short, size} from "./text.js";

const nameOf = (at) => at.upload_id || at.folder;
const deviceOf = (at) => at.device || at.device_folder;

function progress(at) {
  if (at.whole) return chip("good", "whole");
  return el("span", {}, el("progress", {max: Math.max(at.size || 1, 1), value: at.held}), ` ${size(at.held)} of ${size(at.size)}`);
}

export async function uploads(place) {
  const list = el("div");
  place.append(heading("Uploads", el("a", {class: "button", href: "#/order"}, "Order one")), list);
  const refresh = async () => {
    const all = await get("uploads");
    show(list, all.length === 0 ? nothing("No device has sent a file yet.")
      : table(["Order", "Device", "Size", "State", "Files"], all.map((at) => [
        el("a", {href: link("upload", at.device_folder, at.folder), "data-key": `${at.device_folder} ${at.folder}`}, nameOf(at)),
        el("a", {href: link("device", deviceOf(at)), title: deviceOf(at)}, mono(short(deviceOf(at), 16))),
        size(at.size), progress(at), at.files.length])));
  };
  await refresh();
  return refresh;
}

function line(at, levels) {
  const level = levels.includes(at.level) ? at.level.toLowerCase() : "other";
  return el("li", {class: `line ${level}`},
    at.time && el("time", {}, at.time),
    at.level && el("b", {class: "level"}, at.level),
    at.module && el("span", {class: "from"}, at.module),
    el("span", {class: "text"}, at.text),
    at.file && el("small", {}, `${at.function} · ${at.file}:${at.line} · thread ${at.thread}`));
}

export async function upload(place, [deviceFolder, folder]) {
  const all = await get("uploads");
  const found = all.find((at) => at.device_folder === deviceFolder && at.folder === folder);
  if (!found) throw new Error("There is no such upload.");
  const query = {device: deviceFolder, folder, file: "", level: "0", module: "", text: ""};
  const lines = el("ol", {class: "lines"}), counts = el("p", {class: "hint", role: "status"}), notes = el("div");
  const more = el("button", {type: "button", onclick: () => load(false)}, "Load more");
  const levelChoice = el("span"), moduleChoice = el("span");
  let loaded = 0, asked = 0;

  const load = async (anew) => {
    const mine = ++asked;
    const page = await get("lines", {...query, from: anew ? 0 : loaded});
    if (mine !== asked) return;  // another question was asked meanwhile
    if (anew) lines.replaceChildren();
    loaded = (anew ? 0 : loaded) + page.lines.length;
    lines.append(...page.lines.map((at) => line(at, page.levels)));
    counts.textContent = `${counted(page.total, "line")}${loaded < page.total ? `, the first ${loaded} of them here` : ""}` +
      (page.cut ? "; the logs are larger than what is read here: orvane-log reads them whole" : "");
    more.hidden = loaded >= page.total || page.lines.length === 0;
    show(notes, page.notes.length > 0 && el("ul", {class: "notes"}, page.notes.map((note) => el("li", {}, note))));
    if (levelChoice.childElementCount === 0) show(levelChoice, field("Level",
      choice(page.levels.map((name, i) => [String(i), i === 0 ? "all" : `${name} and above`]), query.level, set("level"))));
    if (query.module === "") show(moduleChoice, field("Module",
      choice([["", "all"], ...page.modules.map((name) => [name, name])], "", set("module"), {"data-key": "module"})));
  };
  const set = (name) => (event) => {
    query[name] = event.target.value;
    load(true).catch(() => {});
  };
  let wait = 0;
  const typed = (event) => {
    clearTimeout(wait);
    wait = setTimeout(() => set("text")(event), 200);
  };
  place.append(
    heading("Upload", mono(nameOf(found))),
    el("p", {}, "of ", el("a", {href: link("device", deviceOf(found))}, mono(short(deviceOf(found), 24))), " · ",
      size(found.size), " ", progress(found)),
    el("div", {class: "filters"},
      field("File", choice([["", "all logs"], ...found.files.map((at) => [at.name, `${at.name} (${size(at.size)})`])], "", set("file"))),
      levelChoice, moduleChoice,
      field("Find", el("input", {type: "search", oninput: typed, placeholder: "text or function"}))),
    notes, counts, lines, el("p", {}, more));
  if (found.files.length === 0) {
    show(notes, nothing(found.whole ? "It held no file." : "Its files are shown when all of it has come."));
    more.hidden = true;
  } else {
    await load(true);
  }
  return null;  // what is read stays as it is
}
