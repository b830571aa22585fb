// Tells when there is something new: one request waits at the server all the time.
import {get} from "./api.js";

const again = 3000;  // milliseconds, where the server cannot let us wait or is gone
const rest = 200;    // between two looks, however much happens

const pause = (time) => new Promise((resolve) => setTimeout(resolve, time));

// Calls `changed` at each change and waits for it, and `reached(BOOL)` with each look. Never ends. A page that is not in
// view does not ask.
export async function follow(changed, reached) {
  let known = 0;
  for (;;) {
    if (document.hidden) await new Promise((resolve) =>
      document.addEventListener("visibilitychange", resolve, {once: true}));
    try {
      const look = await get("changes", {after: known});
      reached(true);
      const isNew = look.now !== known;
      known = look.now;
      if (isNew) await changed();
      await pause(look.full ? again : rest);
    } catch {
      reached(false);
      await pause(again);
    }
  }
}
