// What the parts of the editor share.
import type { Artwork } from "../artwork/artwork";
import type { Boxes } from "./boxes";
import type { Overlay } from "./overlay";
import type { Selection } from "./selection";
import type { View } from "./view";

export type ToolName = "select" | "hand" | "rectangle" | "line" | "text";

export interface Context {
  readonly view: View;
  readonly overlay: Overlay;
  readonly selection: Selection;
  readonly boxes: Boxes;
  readonly artwork: Artwork | null;
  tool: ToolName;
  say(sentence: string): void;
  // Something was changed within a step that still goes on.
  changing(): void;
  // Ends what is under way (letters being typed), so that it counts.
  settle(): void;
}
