// Words for values.

export function clock(iso) {
  const time = new Date(iso || NaN);
  if (isNaN(time)) return "";
  const today = new Date().toDateString() === time.toDateString();
  return today ? time.toLocaleTimeString([], {hour12: false}) : time.toLocaleString([], {hour12: false});
}

export function size(bytes) {
  if (!(bytes >= 0)) return "";
  if (bytes < 1000) return `${bytes} bytes`;
  const units = ["kB", "MB", "GB"];
  let value = bytes / 1000, unit = 0;
  while (value >= 1000 && unit < units.length - 1) (value /= 1000), ++unit;
  return `${value.toFixed(value < 10 ? 1 : 0)} ${units[unit]}`;
}

export function microseconds(value) {
  if (value < 1000) return `${value} µs`;
  if (value < 1e6) return `${(value / 1e3).toFixed(1)} ms`;
  return `${(value / 1e6).toFixed(2)} s`;
}

export const counted = (count, noun, plural = noun + "s") => `${count} ${count === 1 ? noun : plural}`;
export const short = (text, length = 10) => text.length > length + 2 ? text.slice(0, length) + "…" : text;
export const link = (...parts) => "#/" + parts.map(encodeURIComponent).join("/");
