// The keys, for who does not know them yet.

const keys: readonly (readonly [string, string])[] = [
  ["Tab, Shift+Tab", "next, previous object"], ["Enter", "into a group, or into a text"], ["Escape", "out again"],
  ["Arrow keys", "move by 1 pt, with Shift by 10"], ["Ctrl+Arrow keys", "move the view"], ["+ − 0 1", "zoom; whole page; real size"],
  ["Space and drag", "move the view"], ["Ctrl+wheel", "zoom"], ["Alt while moving", "no snapping"],
  ["Shift while resizing", "keep the proportions, or not"], ["Shift while turning", "steps of 15°"],
  ["Ctrl+A", "select all"], ["Ctrl+C, X, V", "copy, cut, paste"], ["Ctrl+D", "duplicate"], ["Delete", "delete"],
  ["Ctrl+G, Ctrl+Shift+G", "group, ungroup"], ["Ctrl+] [", "forward, backward; with Shift to the end"],
  ["Ctrl+Z, Ctrl+Shift+Z", "undo, redo"], ["V H R L T P", "tools"],
];

export function keysHelp(): HTMLElement {
  const details = document.createElement("details");
  details.className = "editor-keys";
  const summary = document.createElement("summary");
  summary.textContent = "Keys";
  const list = document.createElement("dl");
  for (const [key, what] of keys) {
    const term = document.createElement("dt");
    term.textContent = key;
    const meaning = document.createElement("dd");
    meaning.textContent = what;
    list.append(term, meaning);
  }
  details.append(summary, list);
  return details;
}
