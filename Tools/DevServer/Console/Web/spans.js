// Spans of games, a trace at a time: who waited for whom, and how long.
import {get} from "./api.js";
import {chip, el, heading, nothing, show} from "./dom.js";
import {noEvents} from "./events.js";
import {counted, microseconds} from "./text.js";

const most = 40;  // traces shown

function spanOf(event) {
  const span = {};
  for (const field of event.fields) span[field.key] = field.text !== undefined ? String(field.text) : String(field.int);
  span.begin = Number(span.ts) || 0;  // microseconds since the epoch
  span.length = Number(span.dur) || 0;
  if (span.begin === 0) span.length = 0;  // it was finished without a beginning
  return span;
}

// In the order of a tree: below each span those that name it as their parent. A parent that has not been reported, or
// that names itself, is none.
function inTree(spans) {
  const bySid = new Map(spans.map((span) => [span.sid, span]));
  const below = new Map(), done = new Set(), ordered = [];
  for (const span of spans) {
    const parent = span.pid && span.pid !== span.sid && bySid.has(span.pid) ? span.pid : "";
    below.set(parent, [...(below.get(parent) || []), span]);
  }
  const walk = (sid, depth) => {
    for (const span of (below.get(sid) || []).sort((left, right) => left.begin - right.begin)) {
      if (done.has(span)) continue;
      done.add(span);
      ordered.push({span, depth: Math.min(depth, 12)});
      if (span.sid) walk(span.sid, depth + 1);
    }
  };
  walk("", 0);
  for (const span of spans) if (!done.has(span)) ordered.push({span, depth: 0});  // a circle
  return ordered;
}

function bar(span, from, length) {
  const made = el("span", {class: isFailed(span) ? "bar failed" : "bar"});
  made.style.left = `${(span.begin - from) / length * 100}%`;
  made.style.width = `max(3px, ${span.length / length * 100}%)`;
  return el("span", {class: "lane"}, span.begin > 0 && made);
}

const isFailed = (span) => span.errcode !== undefined && span.errcode !== "" && span.errcode !== "0";

function row({span, depth}, from, length) {
  const name = el("span", {class: "name"}, span.name || "(no name)");
  name.style.paddingLeft = `${depth * 0.8}em`;
  const facts = Object.entries(span).filter(([key, value]) => !["begin", "length"].includes(key) && value !== "");
  return el("details", {class: "span", "data-key": `${span.tid} ${span.sid}`},
    el("summary", {}, name, bar(span, from, length),
      el("span", {class: "time"}, span.begin > 0 ? microseconds(span.length) : "no beginning",
        isFailed(span) && chip("error", span.errcode))),
    el("dl", {class: "fields"}, facts.map(([key, value]) => el("div", {}, el("dt", {}, key), el("dd", {}, value)))));
}

function trace([tid, spans]) {
  const timed = spans.filter((span) => span.begin > 0);
  const from = timed.length ? Math.min(...timed.map((span) => span.begin)) : 0;
  const end = timed.length ? Math.max(...timed.map((span) => span.begin + span.length)) : 1;
  const begin = from > 0 ? new Date(from / 1000).toLocaleString([], {hour12: false}) : "";
  return el("section", {class: "trace"},
    el("h2", {}, el("code", {}, tid || "(no trace id)"), tid.endsWith("2") && tid.length === 32 && chip("note", "the device's own")),
    el("p", {class: "hint"}, `${begin} · ${counted(spans.length, "span")} · ${microseconds(end - from)}`),
    inTree(spans).map((at) => row(at, from, Math.max(end - from, 1))));
}

export async function spans(place) {
  const list = el("div");
  const onlyFailed = el("input", {type: "checkbox", onchange: () => draw()});
  let all = [];
  const draw = () => {
    const traces = new Map();
    for (const span of all) traces.set(span.tid || "", [...(traces.get(span.tid || "") || []), span]);
    let shown = [...traces].reverse();
    if (onlyFailed.checked) shown = shown.filter(([, spans]) => spans.some(isFailed));
    show(list, all.length === 0 ? noEvents() : shown.length === 0 ? nothing("None of them failed.")
      : shown.slice(0, most).map(trace),
      shown.length > most && el("p", {class: "hint"}, `${shown.length - most} older traces are not shown.`));
  };
  place.append(heading("Spans"), el("div", {class: "filters"},
    el("label", {class: "tick"}, onlyFailed, "only traces with a failure")), list);
  const refresh = async () => {
    all = (await get("events", {name: "YarrowClient"})).events.map(spanOf);
    draw();
  };
  await refresh();
  return refresh;
}
