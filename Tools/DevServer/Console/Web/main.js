// The way in: which screen is shown, and when it is shown anew.
import {status} from "./api.js";
import {el, heading, show} from "./dom.js";
import {follow} from "./live.js";
import {counted} from "./text.js";
import {devices, device} from "./devices.js";
import {requests} from "./requests.js";
import {events} from "./events.js";
import {spans} from "./spans.js";
import {uploads, upload} from "./uploads.js";
import {modules, module} from "./modules.js";
import {order} from "./order.js";

// A screen is a function of its place and the rest of the address. It fills the place, and gives what fills it anew at a
// change; null if it does not change.
const screens = [
  ["devices", "Devices", devices],
  ["requests", "Requests", requests],
  ["events", "Events", events],
  ["spans", "Spans", spans],
  ["uploads", "Uploads", uploads],
  ["modules", "Modules", modules],
  ["order", "Order", order],
  ["device", null, device, "devices"],
  ["upload", null, upload, "uploads"],
  ["module", null, module, "modules"],
];

const main = document.getElementById("main");
const state = document.getElementById("state");
const links = new Map();
let refresh = null;
let isReached = true;

for (const [name, title] of screens.filter((screen) => screen[1])) {
  const anchor = el("a", {href: "#/" + name}, title);
  links.set(name, anchor);
  document.getElementById("screens").append(anchor);
}
document.getElementById("skip").addEventListener("click", (event) => {
  event.preventDefault();
  main.focus();
});

function decode(part) {
  try {
    return decodeURIComponent(part);
  } catch {
    return part;
  }
}

async function open(moved) {
  const address = location.hash;
  const [name, ...rest] = address.slice(2).split("/").map(decode);
  const [key, title, screen, parent] = screens.find((at) => at[0] === name) || screens[0];
  const at = parent || key;
  for (const [other, anchor] of links)
    if (other === at) anchor.setAttribute("aria-current", "page");
    else anchor.removeAttribute("aria-current");
  document.title = `${title || rest.at(-1) || key} · orvane-devserver`;
  const place = el("section", {class: "screen " + key});
  main.replaceChildren(place);
  refresh = null;
  if (moved) main.focus({preventScroll: true});
  scrollTo(0, 0);
  try {
    const made = await screen(place, rest);
    if (main.contains(place)) refresh = made;
  } catch (problem) {
    show(place, heading("Not to be had"), el("p", {class: "problem", role: "alert"}, problem.message));
  }
  if (main.contains(place)) main.dataset.ready = address;  // or another screen has taken its place meanwhile
}

async function showState() {
  if (!isReached) {
    state.className = "state lost";
    state.textContent = "The server is gone. Trying again…";
    return;
  }
  const now = await status();
  state.className = "state";
  state.textContent = `live · rule id ${now.rule_id} · ${counted(now.config, "fetch", "fetches")}` +
    (now.held ? ` · ${now.held} held` : "") + (now.faults.length ? ` · ${counted(now.faults.length, "fault")}` : "");
}

addEventListener("hashchange", () => open(true));
await open(false);
follow(
  () => Promise.allSettled([showState(), refresh && refresh()]),
  (reached) => {
    if (reached === isReached) return;
    isReached = reached;
    showState().catch(() => {});
  });
