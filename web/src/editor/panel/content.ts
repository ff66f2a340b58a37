// What only texts and pictures have.
import type { Context } from "../context";
import type { Pictures } from "../pictures";
import { dropStyle } from "../../artwork/colours";
import { numberText } from "../../artwork/numbers";
import { button, fieldset, numberField, row } from "./fields";
import type { Section } from "./place";

export function textSection(context: Context, edit: (element: SVGElement) => void): Section {
  const size = numberField("Size", "pt", value => {
    const { artwork } = context;
    if (value <= 0) return;
    artwork?.run("Change size of letters", () => {
      for (const text of texts()) {
        const factor = value / (sizeOf(text) || value);
        for (const part of [text, ...text.querySelectorAll<SVGElement>("[font-size]")]) {
          if (part !== text && !part.hasAttribute("font-size")) continue;
          const had = sizeOf(part);
          dropStyle(artwork, part, "font-size");
          artwork.set(part, "font-size", numberText(had * factor));
        }
      }
    });
  }, { min: 0.1 });
  const retype = button("Change letters", () => { const [text] = texts(); if (text !== undefined) edit(text); });
  const element = fieldset("Text", row(size.element, retype));

  function texts(): SVGElement[] {
    return context.selection.editable.filter(object => object.localName === "text");
  }

  return {
    element,
    show() {
      const [first, second] = texts();
      element.hidden = first === undefined;
      retype.disabled = second !== undefined;
      if (first !== undefined) size.show(sizeOf(first));
    },
  };
}

function sizeOf(element: SVGElement): number {
  return parseFloat(getComputedStyle(element).fontSize);
}

export function pictureSection(context: Context, pictures: Pictures): Section {
  const keeps = document.createElement("input");
  keeps.type = "checkbox";
  const label = document.createElement("label");
  label.append(keeps, " Keep the new picture’s proportions");
  const replace = button("Replace picture…", () => { const image = only(); if (image !== null) pictures.chooseInstead(image, keeps.checked); });
  const element = fieldset("Picture", replace, label);

  function only(): SVGImageElement | null {
    const [first, second] = context.selection.editable;
    return second === undefined ? pictureIn(first) : null;
  }

  return {
    element,
    show() { element.hidden = only() === null; },
  };
}

// A picture is mostly alone in a group that cuts it.
function pictureIn(element: SVGElement | undefined): SVGImageElement | null {
  if (element instanceof SVGImageElement) return element;
  if (element?.localName !== "g") return null;
  const [first, second] = element.querySelectorAll("image");
  const others = element.querySelector("path:not(clipPath > path),text");
  return second === undefined && others === null && first !== undefined ? first : null;
}
