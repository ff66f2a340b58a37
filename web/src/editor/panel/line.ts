// Width, dashes and opacity.
import { dropStyle, painted } from "../../artwork/colours";
import { numbersOf, numberText } from "../../artwork/numbers";
import type { Context } from "../context";
import { choice, fieldset, group, numberField, row, textField } from "./fields";
import type { Section } from "./place";

const patterns = [["", "Solid"], ["4 2", "Dashed"], ["1 1", "Dotted"], ["6 2 1 2", "Dash and dot"], ["other", "Other"]] as const;

const looked = 200; // objects, for one that has a line

export function lineSection(context: Context): Section {
  const width = numberField("Line width", "pt", value => set("stroke-width", numberText(value)), { min: 0 });
  const pattern = choice("Dashes", patterns, value => {
    if (value === "other") return;
    const unit = Math.max(0.5, Number(width.input.value) || 1);
    set("stroke-dasharray", value === "" ? null : numbersOf(value).map(length => numberText(length * unit)).join(" "));
  });
  const lengths = textField("Lengths", value => {
    const numbers = numbersOf(value);
    const isRight = numbers.length > 0 && numbers.every(number => number >= 0) && numbers.some(number => number > 0);
    set("stroke-dasharray", isRight ? numbers.map(numberText).join(" ") : null);
  });
  const element = group("Width and dashes of the line", row(width.element, pattern.element), lengths.element);

  function targets(most = Infinity): SVGElement[] {
    return context.selection.editable.slice(0, most).flatMap(object => painted(object, "stroke"))
      .filter(target => getComputedStyle(target).stroke !== "none");
  }

  // The hidden twin says what the visible value cannot; a new value says all.
  function set(name: string, value: string | null): void {
    const { artwork } = context;
    artwork?.run("Change line", () => {
      for (const target of targets()) {
        dropStyle(artwork, target, name);
        artwork.set(target, name, value);
        artwork.set(target, `data-${name}`, null);
      }
    });
  }

  return {
    element,
    show() {
      const [first] = targets(looked);
      element.hidden = first === undefined;
      if (first === undefined) return;
      const style = getComputedStyle(first);
      width.show(parseFloat(style.strokeWidth));
      const dashes = style.strokeDasharray === "none" ? [] : numbersOf(style.strokeDasharray.replace(/px/g, ""));
      const [shortest] = [...dashes].sort((a, b) => a - b);
      const unit = dashes.map(length => numberText(length / (shortest ?? 1))).join(" ");
      pattern.select.value = dashes.length === 0 ? "" : ({ "2 1": "4 2", "1 1": "1 1", "6 2 1 2": "6 2 1 2" })[unit] ?? "other";
      for (const option of pattern.select.options) option.hidden = option.value === "other" && pattern.select.value !== "other";
      lengths.input.value = dashes.map(numberText).join(" ");
      lengths.element.hidden = dashes.length === 0;
    },
  };
}

export function opacitySection(context: Context): Section {
  const opacity = numberField("Opacity", "%", value => {
    const { artwork, selection } = context;
    artwork?.run("Change opacity", () => {
      for (const element of selection.editable) {
        dropStyle(artwork, element, "opacity");
        artwork.set(element, "opacity", value >= 100 ? null : numberText(value / 100));
      }
    });
  }, { min: 0, max: 100 });
  const element = fieldset("Opacity", row(opacity.element));
  element.classList.add("unnamed");
  return {
    element,
    show() {
      const [first] = context.selection.editable;
      element.hidden = first === undefined;
      if (first !== undefined) opacity.show(Number(getComputedStyle(first).opacity) * 100);
    },
  };
}
