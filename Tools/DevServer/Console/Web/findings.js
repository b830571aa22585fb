// What the lint says, shown.
import {chip, el} from "./dom.js";
import {counted} from "./text.js";

const order = {error: 0, warning: 1, note: 2};

export const sorted = (findings) => [...findings].sort((left, right) => order[left.severity] - order[right.severity]);

// `pick(finding)`, if given, makes a finding a button.
export function findingList(findings, pick) {
  if (findings.length === 0) return el("p", {class: "good"}, "The lint finds nothing.");
  return el("ul", {class: "findings"}, sorted(findings).map((finding, i) => el("li", {class: finding.severity},
    chip(finding.severity, finding.severity),
    finding.key && (pick
      ? el("button", {type: "button", class: "key", "data-key": `finding ${i}`, onclick: () => pick(finding)}, finding.key)
      : el("code", {}, finding.key)),
    el("span", {}, finding.text),
    finding.rule && el("small", {}, finding.rule))));
}

export function findingCounts(findings) {
  const chips = ["error", "warning", "note"].map((severity) => {
    const count = findings.filter((finding) => finding.severity === severity).length;
    return count > 0 && chip(severity, counted(count, severity));
  });
  return chips.some((made) => made) ? chips : chip("good", "clean");
}
