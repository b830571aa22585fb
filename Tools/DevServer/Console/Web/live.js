// Tells when there is something new: one request waits at the server all the time.
import {get} from "./api.js";

const again = 3000;  // milliseconds, where the server cannot let us wait or is gone

const pause = (time) => new Promise((resolve) => setTimeout(resolve, time));

// Calls `changed` at each change, and `reached(BOOL)` when the server goes or comes back. Never ends. A page that is not
// in view does not ask.
export async function follow(changed, reached) {
  let known = 0;
  for (;;) {
    if (document.hidden) await new Promise((resolve) =>
      document.addEventListener("visibilitychange", resolve, {once: true}));
    try {
      const look = await get("changes", {after: known});
      reached(true);
      if (look.now !== known) changed();
      known = look.now;
      if (look.full) await pause(again);
    } catch {
      reached(false);
      await pause(again);
    }
  }
}
