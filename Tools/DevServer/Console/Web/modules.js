// The modules as files, with the lint beside them.
import {get, post, put, remove} from "./api.js";
import {chip, choice, el, field, heading, mono, nothing, show, table} from "./dom.js";
import {findingCounts, findingList} from "./findings.js";
import {link, short, size} from "./text.js";

// The choice between all devices and one of those that are known.
export async function deviceChoice(value, onchange) {
  const known = (await get("devices")).map((device) => device.did);
  if (value && !known.includes(value)) known.unshift(value);
  return choice([["", "all devices"], ...known.map((did) => [did, short(did, 32)])], value, onchange, {name: "device"});
}

export async function modules(place) {
  const list = el("div");
  const name = el("input", {name: "name", required: true, pattern: "[^.\\/][^\\/]*", placeholder: "a plugin's name, the game id, Upload…"});
  const device = await deviceChoice("", () => {});
  const add = (event) => {
    event.preventDefault();
    location.hash = link("module", device.value, name.value);
  };
  place.append(heading("Modules"), list,
    el("form", {class: "filters", onsubmit: add}, field("New module", name), field("For", device),
      el("button", {type: "submit"}, "Edit")));
  const refresh = async () => {
    const all = await get("modules");
    show(list, all.length === 0 ? nothing("There are none: devices that ask forget all their remote keys.")
      : table(["Module", "For", "Size", "Lint"], all.map((at) => [
        el("a", {href: link("module", at.device, at.name), "data-key": `${at.device} ${at.name}`}, at.name),
        at.device ? el("a", {href: link("device", at.device), title: at.device}, mono(short(at.device, 16))) : "all devices",
        size(at.bytes), findingCounts(at.findings)])));
  };
  await refresh();
  return refresh;
}

// Shows where a finding is: the key's name in the text.
function select(text, key) {
  const at = text.value.indexOf(JSON.stringify(key));
  if (at < 0) return;
  text.focus();
  text.setSelectionRange(at, at + JSON.stringify(key).length);
  text.scrollTop = text.scrollHeight * (text.value.slice(0, at).split("\n").length - 3) / text.value.split("\n").length;
}

// What was typed and not saved, while the page lives: by the module, with the digest of the file that it began from.
const drafts = new Map();

export async function module(place, [device, name]) {
  const query = {device, name}, draftOf = JSON.stringify(query);
  let {text: saved, digest} = await get("module", query);
  const isNew = digest === "", draft = drafts.get(draftOf);
  if (isNew) saved = "{\n    \n}\n";
  if (draft) digest = draft.digest;
  const said = el("p", {class: "said", role: "status"}), lint = el("div", {class: "lint", "aria-live": "polite"});
  const text = el("textarea", {class: "editor", spellcheck: "false", autocapitalize: "off", "aria-label": `${name}.json`,
    value: draft ? draft.text : saved});

  let wait = 0, asked = 0;
  const check = async () => {
    const mine = ++asked;
    const {findings} = await post("lint", query, text.value);
    if (mine === asked) show(lint, findingList(findings, (finding) => select(text, finding.key)));
  };
  const say = (kind, ...words) => {
    said.className = `said ${kind}`;
    show(said, ...words);
  };
  const typed = () => {
    clearTimeout(wait);
    wait = setTimeout(() => check().catch(() => {}), 200);
    if (text.value === saved) return void drafts.delete(draftOf);
    drafts.set(draftOf, {text: text.value, digest});
    say("", "Not saved yet.");
  };
  const save = async () => {
    const sent = text.value;
    try {
      const done = await put("module", {...query, was: digest}, sent);
      digest = done.digest;
      saved = sent;
      drafts.delete(draftOf);
      say("good", `Saved. Rule id ${done.rule_id} from the next fetch on.`);
    } catch (problem) {
      if (problem.status !== 409) return say("problem", problem.message);
      say("problem", `${problem.message}. `,
        el("button", {type: "button", onclick: () => location.reload()}, "Load it, and lose this text"));
    }
  };
  const drop = async () => {
    try {
      await remove("module", {...query, was: digest});
      location.hash = "#/modules";
    } catch (problem) {
      say("problem", problem.message);
    }
  };
  const ask = () => say("problem", "Devices forget these keys. ",
    el("button", {type: "button", class: "danger", onclick: drop}, `Delete ${name}`),
    el("button", {type: "button", onclick: () => say("")}, "Keep it"));
  text.addEventListener("input", typed);
  text.addEventListener("keydown", (event) => {
    if (event.key.toLowerCase() !== "s" || !(event.ctrlKey || event.metaKey)) return;
    event.preventDefault();
    save();
  });
  place.append(
    heading("Module", mono(name), chip("plain", device ? `for ${short(device, 16)}` : "for all devices")),
    el("div", {class: "beside"},
      el("div", {}, text, el("p", {class: "actions"},
        el("button", {type: "button", class: "main", onclick: save}, "Save"),
        !isNew && el("button", {type: "button", onclick: ask}, "Delete…"),
        el("small", {}, "Ctrl+S saves.")), said),
      el("div", {}, el("h2", {}, "Lint"), lint)));
  if (draft) say("", "Not saved yet.");
  await check();
  return async () => {  // somebody else may have changed the file
    const now = await get("module", query);
    if (now.digest === digest) return;
    if (text.value !== saved) return say("problem", "The file has been changed meanwhile. ",
      el("button", {type: "button", onclick: () => location.reload()}, "Load it, and lose this text"));
    ({text: saved, digest} = now);
    text.value = saved;
    say("good", "Loaded anew: the file has been changed.");
    await check();
  };
}
