// The paint of what is selected, inside or of its line: none, a colour of the screen, amounts of ink, a spot colour.
import { inkHex, painted, paintOf, setPaint, spotHex, type Paint, type Side } from "../../artwork/colours";
import type { Context } from "../context";
import { choice, fieldset, numberField, row, textField } from "./fields";
import type { Section } from "./place";

const looked = 200; // objects, to say whether their paints differ

const kinds = [["none", "None"], ["screen", "Colour"], ["ink", "Inks (CMYK)"], ["spot", "Spot colour"], ["server", "Gradient or pattern"]] as const;
const inkNames = ["Cyan", "Magenta", "Yellow", "Black"] as const;

export function paintSection(context: Context, side: Side, title: string): Section {
  const name = side === "fill" ? "Change fill" : "Change line";
  const kind = choice(`${title}, kind of paint`, kinds, value => set(turned(shown, value)));
  const colour = document.createElement("input");
  colour.type = "color";
  colour.setAttribute("aria-label", `${title}, colour`);
  const hex = textField("Colour", value => {
    const found = /^#?([0-9a-f]{6}|[0-9a-f]{3})$/i.exec(value.trim())?.[1];
    if (found === undefined) hex.input.value = hexOf(shown);
    else set({ kind: "screen", hex: `#${(found.length === 3 ? found.replace(/./g, "$&$&") : found).toLowerCase()}` });
  });
  const inks = inkNames.map((ink, i) => numberField(ink, "%", value => setInk(i, value / 100), { min: 0, max: 100 }));
  const spot = textField("Name", value => { if (shown.kind === "spot" && value.trim() !== "") set({ ...shown, name: value.trim() }); });
  const strength = numberField("Strength", "%", value => { if (shown.kind === "spot") set({ ...shown, tint: 1 - value / 100 }); }, { min: 0, max: 100 });
  const note = document.createElement("p");
  note.className = "editor-note";
  const screenRow = row(colour, hex.element);
  const spotRow = row(spot.element, strength.element);
  const inkRow = row(...inks.map(ink => ink.element));
  inkRow.classList.add("inks");
  const swatch = document.createElement("span");
  swatch.className = "editor-swatch";
  const element = fieldset(title, row(kind.element, swatch), screenRow, spotRow, inkRow, note);
  let shown: Paint = { kind: "none" };

  // The system's chooser tells of each colour that a person tries: they are one step.
  colour.addEventListener("input", () => {
    context.artwork?.begin(name);
    apply({ kind: "screen", hex: colour.value });
  });
  colour.addEventListener("change", () => context.artwork?.commit());
  kind.element.classList.add("unnamed");

  function targets(): SVGElement[] { return context.selection.editable.flatMap(object => painted(object, side)); }

  function apply(paint: Paint): void {
    const { artwork } = context;
    if (artwork === null) return;
    for (const target of targets()) setPaint(artwork, target, side, paint);
  }

  function set(paint: Paint): void {
    if (paint.kind !== "server") context.artwork?.run(name, () => apply(paint));
  }

  function setInk(at: number, amount: number): void {
    if (shown.kind !== "ink" && shown.kind !== "spot") return;
    set({ ...shown, amounts: shown.amounts.map((old, i) => i === at ? amount : old) });
  }

  return {
    element,
    show() {
      const parts = context.selection.editable.slice(0, looked).flatMap(object => painted(object, side)).slice(0, looked);
      element.hidden = parts.length === 0;
      const [first] = parts;
      if (first === undefined) return;
      shown = paintOf(first, side);
      const isMixed = parts.some(part => JSON.stringify(paintOf(part, side)) !== JSON.stringify(shown));
      kind.select.value = shown.kind;
      for (const option of kind.select.options) option.hidden = option.value === "server" && shown.kind !== "server";
      const seen = hexOf(shown);
      colour.value = seen;
      hex.input.value = seen;
      swatch.style.background = shown.kind === "none" || shown.kind === "server" ? "" : seen;
      swatch.classList.toggle("empty", shown.kind === "none" || shown.kind === "server");
      screenRow.hidden = shown.kind !== "screen";
      spotRow.hidden = shown.kind !== "spot";
      inkRow.hidden = shown.kind !== "ink" && shown.kind !== "spot";
      const { amounts } = shown.kind === "ink" || shown.kind === "spot" ? shown : { amounts: [] };
      inks.forEach((ink, i) => ink.show((amounts[i] ?? 0) * 100));
      if (shown.kind === "spot") {
        spot.input.value = shown.name;
        strength.show((1 - shown.tint) * 100);
      }
      note.textContent = isMixed ? "What is selected has several paints; a change is for all of it."
        : shown.kind === "spot" ? "The inks stand for the spot colour where it is not printed."
          : shown.kind === "server" ? `A ${shown.what}: another kind of paint replaces it.` : "";
      note.hidden = note.textContent === "";
    },
  };
}

function hexOf(paint: Paint): string {
  switch (paint.kind) {
    case "screen": return paint.hex;
    case "ink": return inkHex(paint.amounts);
    case "spot": return spotHex(paint.amounts, paint.tint);
    default: return "#000000";
  }
}

// The same paint, as near as may be, said in another way.
function turned(paint: Paint, kind: string): Paint {
  const hex = hexOf(paint);
  const amounts = paint.kind === "ink" || paint.kind === "spot" ? paint.amounts : inksOf(hex);
  switch (kind) {
    case "none": return { kind: "none" };
    case "ink": return { kind: "ink", amounts };
    case "spot": return { kind: "spot", name: "Spot", amounts, tint: 0 };
    case "screen": return { kind: "screen", hex };
    default: return paint;
  }
}

function inksOf(hex: string): number[] {
  const light = [1, 3, 5].map(at => parseInt(hex.slice(at, at + 2), 16) / 255);
  const black = 1 - Math.max(...light);
  const rounded = (value: number): number => Math.round(value * 1e4) / 1e4;
  return [...light.map(level => rounded(1 - level - black)), rounded(black)];
}
