// Ordering files from devices: the module "Upload", filled in.
import {get, post, put, remove} from "./api.js";
import {el, field, heading, mono, nothing, show} from "./dom.js";
import {findingList} from "./findings.js";
import {deviceChoice} from "./modules.js";
import {short} from "./text.js";

const two = (number) => String(number).padStart(2, "0");

// One that is no number: a number would be printed anew on its way.
function freshId() {
  const now = new Date();
  return `order_${now.getFullYear()}${two(now.getMonth() + 1)}${two(now.getDate())}_${two(now.getHours())}${two(now.getMinutes())}${two(now.getSeconds())}`;
}

export async function order(place, [did = ""]) {
  const input = (value, properties = {}) => el("input", {value, oninput: () => typed(), ...properties});
  const controls = {
    upload_id: input(freshId(), {required: true}),
    file_path: input("ORVANE_LOG_DIR|ORVANE_CORE_LOG_DIR"),
    file_pattern: input("log$"),
    part_size: input("1000000", {type: "number", required: true}),
  };
  const onlyWifi = el("input", {type: "checkbox", onchange: () => typed()});
  const device = await deviceChoice(did, () => typed());
  const lint = el("div", {class: "lint", "aria-live": "polite"}), said = el("p", {class: "said", role: "status"});
  const orders = el("div");

  const text = () => {
    const keys = {};
    for (const [key, control] of Object.entries(controls)) keys[key] = control.value;
    keys.part_size = Number(keys.part_size);
    if (onlyWifi.checked) keys.manual_upload = 1;  // 0 is the default
    return JSON.stringify(keys, null, 4) + "\n";
  };
  const where = () => ({device: device.value, name: "Upload"});
  let wait = 0, asked = 0;
  const check = async () => {
    const mine = ++asked;
    const {findings} = await post("lint", where(), text());
    if (mine === asked) show(lint, findingList(findings));
  };
  const typed = () => {
    clearTimeout(wait);
    wait = setTimeout(() => check().catch(() => {}), 200);
  };
  const say = (kind, words) => {
    said.className = `said ${kind}`;
    said.textContent = words;
  };
  const send = async (event) => {
    event.preventDefault();
    try {
      const {digest} = await get("module", where());
      const done = await put("module", {...where(), was: digest}, text());
      say("good", `Ordered ${controls.upload_id.value}. Devices take it with their next fetch, rule id ${done.rule_id}.` +
        (digest ? " It takes the place of the order before." : ""));
      await refresh();
    } catch (problem) {
      say("problem", problem.message);
    }
  };
  const takeBack = async (at) => {
    try {
      const {digest} = await get("module", at);
      await remove("module", {...at, was: digest});
      say("good", "Taken back.");
    } catch (problem) {
      say("problem", problem.message);
    }
    await refresh();
  };
  place.append(heading("Order an upload"),
    el("div", {class: "beside"},
      el("form", {class: "form", onsubmit: send},
        field("From", device),
        field("Id", controls.upload_id, "names the order; an order that a device has carried out is not carried out again"),
        field("Folders", controls.file_path, "separated by |; the log folders by their names, others from the game's home"),
        field("Patterns", controls.file_pattern, "of file names, separated by |"),
        field("Bytes a part", controls.part_size),
        el("label", {class: "tick"}, onlyWifi, "over Wi-Fi alone"),
        el("p", {class: "actions"}, el("button", {type: "submit", class: "main"}, "Order")), said),
      el("div", {}, el("h2", {}, "Lint"), lint, el("h2", {}, "Orders that stand"), orders)));

  const refresh = async () => {
    const standing = (await get("modules")).filter((at) => at.name === "Upload");
    const texts = await Promise.all(standing.map((at) => get("module", {device: at.device, name: at.name})));
    show(orders, standing.length === 0 ? nothing("None.") : el("ul", {class: "orders"}, standing.map((at, i) =>
      el("li", {}, mono(idOf(texts[i].text)), at.device ? ` from ${short(at.device, 16)} ` : " from all devices ",
        el("button", {type: "button", "data-key": `back ${at.device}`,
          onclick: () => takeBack({device: at.device, name: at.name})}, "Take back")))));
  };
  await Promise.all([check(), refresh()]);
  return refresh;
}

function idOf(text) {
  try {
    return String(JSON.parse(text).upload_id ?? "(no id)");
  } catch {
    return "(no JSON)";
  }
}
