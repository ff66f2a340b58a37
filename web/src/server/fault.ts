// What can go wrong between the page and the file, as one type.

import type { Fault } from "./reports";

// Codes of the program's errors that the page treats in a way of their own.
export const code = {
  cancelled: 2,
  encrypted: 7,
  access: 19,
  pageChanged: 21,
  damagedFile: 22,
  fileChanged: 24,
  foreignUpdate: 25,
  loss: 26,
  artwork: 27,
  otherArtwork: 29,
  artworkMissing: 30,
  unpatchable: 31,
  notPermitted: 32,
  certifiedFile: 33,
  annotationChanged: 34,
  crashed: 52,
} as const;

export type FaultKind =
  // The command ran and says that it could not do it.
  | "command"
  // The server refused the request.
  | "refused"
  // Nobody answers any more.
  | "lost"
  // No answer within the time that was given.
  | "late";

export class ServerFault extends Error implements Fault {
  constructor(
    readonly kind: FaultKind,
    readonly code: number,
    readonly sentence: string,
  ) {
    super(sentence);
    this.name = "ServerFault";
  }

  // It is not known whether what was asked for was done.
  get isUncertain(): boolean {
    return this.kind === "lost" || this.kind === "late" || this.code === code.crashed;
  }
}

export function commandFault(fault: Fault): ServerFault {
  return new ServerFault("command", fault.code, fault.sentence);
}

// Whether `error` only says that what was asked for is not wanted any more.
export function isAborted(error: unknown): boolean {
  return error instanceof DOMException && error.name === "AbortError";
}

// Any error as a fault, so that each has a sentence.
export function asFault(error: unknown): ServerFault {
  if (error instanceof ServerFault) {
    return error;
  }
  const text = error instanceof Error ? error.message : String(error);
  return new ServerFault("command", 0, `something went wrong in this page: ${text}`);
}
