// Who has asked, and what one of them was sent.
import {get} from "./api.js";
import {chip, el, heading, mono, nothing, show, table} from "./dom.js";
import {findingList} from "./findings.js";
import {requestList} from "./requests.js";
import {clock, counted, link, short} from "./text.js";

function stateOf(device) {
  const client = device.client || "";
  if (client.startsWith("will re")) return chip("good", "took the answer");
  if (client.startsWith("will ask")) return chip("note", "was sent on");
  return chip("warning", client.startsWith("has left") ? "left" : "kept the old file");
}

const of = (device, name) => (device.com_params && device.com_params[name]) || "";

export async function devices(place) {
  const list = el("div");
  place.append(heading("Devices"), list);
  const refresh = async () => {
    const all = await get("devices");
    show(list, all.length === 0
      ? nothing("No device has asked yet. A game is pointed here by the setting ", mono("RemoteConfigUrl"), " = ",
        mono(location.origin), ".")
      : table(["Device", "Game", "System", "Last seen", "Fetches", "State"], all.map((device) => [
        el("a", {href: link("device", device.did), title: device.did, "data-key": device.did}, mono(short(device.did, 16))),
        [of(device, "bid"), " ", el("small", {}, of(device, "app_ver"))],
        [of(device, "mtype"), " ", el("small", {}, of(device, "os_ver"))],
        clock(device.last),
        [device.fetches, device.problems > 0 && chip("error", counted(device.problems, "problem"))],
        [stateOf(device), device.rule_id !== undefined && el("small", {}, ` rule id ${device.rule_id}`)],
      ])));
  };
  await refresh();
  return refresh;
}

// "1.10" beside 1.100000: what was sent as JSON, and what the game gets.
function keyRow(row) {
  const reads = row.reads;
  const all = el("dl", {class: "reads"}, Object.entries(reads).map(([type, text]) =>
    [el("dt", {}, type), el("dd", {class: text.startsWith("(") ? "absent" : ""}, text === "" ? "(empty)" : text)]));
  const effective = row.effective !== undefined
    ? [mono(row.effective === "" ? "(empty)" : row.effective), el("small", {}, ` ${row.type}`)]
    : row.stored === null ? el("em", {}, "dropped") : mono(row.stored === "" ? "(empty)" : row.stored);
  return [
    mono(row.key),
    mono(row.sent),
    el("div", {class: row.changed ? "effective other" : "effective"}, effective,
      el("details", {"data-key": `${row.module} ${row.key}`}, el("summary", {}, "by type"), all)),
    row.findings.length > 0 && findingList(row.findings),
  ];
}

export async function device(place, [did]) {
  const body = el("div");
  place.append(heading("Device", el("code", {class: "long"}, did)), body);
  const refresh = async () => {
    const [device, requests, uploads] = await Promise.all(
      [get("device", {did}), get("requests", {did}), get("uploads")]);
    const params = device.com_params || {};
    const plugins = Object.entries(params.sdk_list || {}).map(([name, entry]) => `${name} ${entry && entry.ver || ""}`);
    const facts = [["Game", `${params.bid || ""} ${params.app_ver || ""}`], ["Game id", params.gid],
      ["Model", `${params.mfrs || ""} ${params.mtype || ""}`], ["System", params.os_ver], ["Channel", params.cid],
      ["User", params.oid], ["Plugins", plugins.join(", ")], ["Last seen", clock(device.last)],
      ["Last answer", device.client]];
    const names = [...new Set(device.keys.map((row) => row.module))];
    const own = uploads.filter((at) => at.device === did);
    show(body,
      el("dl", {class: "facts"}, facts.filter(([, value]) => value && String(value).trim()).map(([name, value]) =>
        el("div", {class: name === "Last answer" && "wide"}, el("dt", {}, name), el("dd", {}, String(value))))),
      el("p", {class: "actions"},
        el("a", {class: "button", href: link("order", did), "data-key": "order"}, "Order an upload"),
        el("a", {class: "button", href: link("modules"), "data-key": "modules"}, "Edit modules")),
      device.is_known && device.served_rule_id !== device.modules_rule_id && el("p", {class: "hint"},
        `Rule id ${device.served_rule_id} is served by now; this device has ${device.modules_rule_id} until it asks again.`),
      !device.is_known && nothing("What this device has is not known: it has taken no answer that this server knows of."),
      device.is_known && names.length === 0 && nothing("This device was sent no keys."),
      names.map((name) => el("section", {class: "module"},
        el("h2", {}, name, device.own_modules.includes(name) && chip("note", "has keys of its own")),
        table(["Key", "Sent", "The game reads", "Lint"], device.keys.filter((row) => row.module === name).map(keyRow)))),
      own.length > 0 && el("section", {}, el("h2", {}, "Uploads"), el("ul", {}, own.map((at) =>
        el("li", {}, el("a", {href: link("upload", at.device_folder, at.folder)}, at.upload_id))))),
      el("section", {}, el("h2", {}, "Requests"), requestList(requests.slice(0, 20))));
  };
  await refresh();
  return refresh;
}
