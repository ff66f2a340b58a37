// The editor's keys, for who does not know them yet.

export interface KeyRow {
  readonly keys: string;
  readonly does: string;
}

export const keyHelp: readonly KeyRow[] = [
  { keys: "Tab, Shift+Tab", does: "Next, previous object" },
  { keys: "A", does: "Keep what is selected: Tab adds to it" },
  { keys: "Enter", does: "Into a group, or into a text" },
  { keys: "Escape", does: "Out again" },
  { keys: "Arrow keys", does: "Move by 1 pt, with Shift by 10" },
  { keys: "Ctrl+Arrow keys", does: "Move the view" },
  { keys: "+", does: "Larger" },
  { keys: "−", does: "Smaller" },
  { keys: "0", does: "Whole page" },
  { keys: "1", does: "Real size" },
  { keys: "Space and drag", does: "Move the view" },
  { keys: "Ctrl+wheel", does: "Zoom" },
  { keys: "Alt", does: "While moving or resizing: no snapping" },
  { keys: "Shift", does: "While resizing: keep the proportions, or not" },
  { keys: "Shift", does: "While turning: steps of 15°" },
  { keys: "Ctrl+A", does: "Select all" },
  { keys: "Ctrl+C, Ctrl+X, Ctrl+V", does: "Copy, cut, paste, also into another page" },
  { keys: "Ctrl+D", does: "Duplicate" },
  { keys: "Delete", does: "Delete" },
  { keys: "Ctrl+G, Ctrl+Shift+G", does: "Group, ungroup" },
  { keys: "Ctrl+], Ctrl+[", does: "Forward, backward; with Shift to the end" },
  { keys: "Ctrl+Z, Ctrl+Shift+Z", does: "Undo, redo" },
  { keys: "V, H, R, L, T, P", does: "Select, move the view, rectangle, line, text, picture" },
];
