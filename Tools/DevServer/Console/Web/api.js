// What the server is asked.
const root = "/_orvane/console/data/";

export class Refusal extends Error {
  constructor(status, message) {
    super(message);
    this.status = status;
  }
}

async function ask(method, path, query, body) {
  const text = new URLSearchParams(query).toString();
  const answer = await fetch(path + (text ? "?" + text : ""), {method, body, cache: "no-store"});
  const value = await answer.json().catch(() => ({}));  // what HTTP itself refuses has no words
  if (!answer.ok) throw new Refusal(answer.status, value.error || `the status ${answer.status}`);
  return value;
}

export const get = (what, query = {}) => ask("GET", root + what, query);
export const put = (what, query, body) => ask("PUT", root + what, query, body);
export const post = (what, query, body) => ask("POST", root + what, query, body);
export const remove = (what, query) => ask("DELETE", root + what, query);
export const status = () => ask("GET", "/_orvane/status", {});
