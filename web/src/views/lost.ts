// Says that the program is not there any more, and what to do with the work.

import type { Heartbeat } from "../server/alive";
import type { Desk } from "./desk";
import { downloadWork } from "./elsewhere";
import type { Messages } from "./messages";

export function watchServer(heartbeat: Heartbeat, desk: Desk, messages: Messages): void {
  const tell = (what: string, text: string) => {
    const download = { label: "Download as SVG", run: () => downloadWork(desk) };
    messages.notify({
      name: "lost", look: "danger", text: `${what} Your work is kept in this tab. ${text}`,
      actions: desk.report === null ? [] : [download],
    });
  };
  heartbeat.addEventListener("lost", () => tell(
    "The program does not answer any more: it was ended, or this machine slept.",
    "As an SVG file it can be saved by \"corvane save PAGE.svg FILE.pdf\"."));
  heartbeat.addEventListener("foreign", () => tell(
    "The program was started anew, and this tab belongs to the one before.",
    "Open the address that it prints. As an SVG file the work can be saved by \"corvane save PAGE.svg FILE.pdf\"."));
  heartbeat.addEventListener("found", () => {
    messages.settle("lost");
    messages.say("The program is there again.");
  });
}
