// Why a save was refused, and what a person can do about it.

import { code } from "../server/fault";
import type { Fault } from "../server/reports";
import { isLocked } from "./password";
import { commandFault } from "../server/fault";
import { plain } from "./words";

export interface Refusal {
  readonly title: string;
  readonly text: string;
  // The save can be made all the same, with a loss.
  readonly canForce: boolean;
  readonly canMend: boolean;
  // Another program or tab changed the page: it can be opened again beside this work.
  readonly isConflict: boolean;
  readonly wantsPassword: boolean;
}

type Row = readonly [title: string, ways?: "force" | "mend" | "conflict" | "changed" | "password"];

const rows: Readonly<Record<number, Row>> = {
  [code.access]: ["The file cannot be changed now"],
  [code.pageChanged]: ["The page was changed meanwhile", "conflict"],
  [code.damagedFile]: ["The file is damaged", "mend"],
  [code.fileChanged]: ["The file was changed meanwhile", "changed"],
  [code.loss]: ["Something would be lost", "force"],
  [code.artwork]: ["The drawing cannot be read"],
  [code.otherArtwork]: ["The page was saved meanwhile", "conflict"],
  [code.artworkMissing]: ["Much of the page would be deleted", "force"],
  [code.unpatchable]: ["This change cannot be made"],
  [code.notPermitted]: ["The owner of the file does not permit changes", "password"],
  [code.certifiedFile]: ["The file is certified", "force"],
  [code.annotationChanged]: ["Annotations were changed", "force"],
};

export function refusal(fault: Fault): Refusal {
  const [title, way] = rows[fault.code] ?? ["The page cannot be saved"];
  return {
    title,
    text: plain(fault.sentence),
    // A change that would harm others has no force of its own; its sentence says where there is one.
    canForce: way === "force" || way === "conflict" || fault.sentence.includes("--force"),
    canMend: way === "mend",
    isConflict: way === "conflict" || way === "changed",
    wantsPassword: way === "password" || isLocked(commandFault(fault)),
  };
}
