// All that can be done to the page, under the names that buttons and keys share.
import type { Arranging } from "./arrange";
import type { Context, ToolName } from "./context";
import type { IconName } from "./icons";
import type { Pictures } from "./pictures";

export interface Command {
  readonly name: string;
  readonly icon: IconName;
  readonly keys: string; // as a person reads them
  readonly tool?: ToolName;
  isPossible(): boolean;
  run(byKeyboard: boolean): void;
}

export interface Parts {
  readonly context: Context;
  readonly arranging: Arranging;
  readonly pictures: Pictures;
  undo(): void;
  redo(): void;
  take(tool: ToolName, byKeyboard: boolean): void;
}

const zoomStep = 1.25;

// Groups of commands, with the groups' names, in the order of the toolbar.
export function commandsOf(parts: Parts): readonly (readonly [string, readonly Command[]])[] {
  const { context, arranging, pictures } = parts;
  const hasPage = (): boolean => context.artwork !== null;
  const hasObjects = (): boolean => context.selection.editable.length > 0;
  const tool = (name: string, tool: ToolName & IconName, keys: string): Command =>
    ({ name, icon: tool, keys, tool, isPossible: hasPage, run: byKeyboard => parts.take(tool, byKeyboard) });
  const act = (name: string, icon: IconName, keys: string, isPossible: () => boolean, run: () => void): Command =>
    ({ name, icon, keys, isPossible, run });
  return [
    ["Tools", [
      tool("Select", "select", "V"), tool("Move the view", "hand", "H"), tool("Rectangle", "rectangle", "R"),
      tool("Line", "line", "L"), tool("Text", "text", "T"),
      act("Picture…", "picture", "P", hasPage, () => pictures.chooseNew()),
    ]],
    ["Steps", [
      act("Undo", "undo", "Ctrl+Z", () => context.artwork?.canUndo === true, () => parts.undo()),
      act("Redo", "redo", "Ctrl+Shift+Z", () => context.artwork?.canRedo === true, () => parts.redo()),
    ]],
    ["Objects", [
      act("Duplicate", "duplicate", "Ctrl+D", hasObjects, () => arranging.duplicate()),
      act("Delete", "delete", "Delete", hasObjects, () => arranging.delete()),
      act("Group", "group", "Ctrl+G", () => context.selection.editable.length > 1, () => arranging.group()),
      act("Ungroup", "ungroup", "Ctrl+Shift+G", () => context.selection.editable.some(element => element.localName === "g"), () => arranging.ungroup()),
    ]],
    ["Order", [
      act("Bring to front", "front", "Ctrl+Shift+]", hasObjects, () => arranging.order("front")),
      act("Bring forward", "forward", "Ctrl+]", hasObjects, () => arranging.order("forward")),
      act("Send backward", "backward", "Ctrl+[", hasObjects, () => arranging.order("backward")),
      act("Send to back", "back", "Ctrl+Shift+[", hasObjects, () => arranging.order("back")),
    ]],
    ["View", [
      act("Zoom out", "out", "−", hasPage, () => context.view.zoomBy(1 / zoomStep)),
      act("Zoom in", "in", "+", hasPage, () => context.view.zoomBy(zoomStep)),
      act("Whole page", "fit", "0", hasPage, () => context.view.fit()),
    ]],
  ];
}
