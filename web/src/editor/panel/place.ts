// Place, size and angle in numbers: points from the page's upper left corner, degrees clockwise.
import { boundsOf } from "../../artwork/geometry";
import { change, moveMatrix, scaleMatrix, turnMatrix } from "../changing";
import type { Context } from "../context";
import { corners, frameOf, pointIn, sizeOf } from "../frame";
import { fieldset, numberField, row } from "./fields";

export interface Section {
  readonly element: HTMLElement;
  // Shows what is selected; what it has nothing to say of hides it.
  show(context: Context): void;
}

export function placeSection(context: Context): Section {
  const x = numberField("X", "pt", value => move(value, null));
  const y = numberField("Y", "pt", value => move(null, value));
  const width = numberField("Width", "pt", value => resize(value, null), { min: 0 });
  const height = numberField("Height", "pt", value => resize(null, value), { min: 0 });
  const angle = numberField("Angle", "°", turn);
  const element = fieldset("Place", row(x.element, y.element), row(width.element, height.element), row(angle.element));

  function move(toX: number | null, toY: number | null): void {
    const frame = frameOf(context);
    if (frame === null) return;
    const box = boundsOf(corners(frame));
    const { page } = context.view;
    change(context, "Move", moveMatrix(toX === null ? 0 : toX + page.x - box.x, toY === null ? 0 : toY + page.y - box.y));
  }

  function resize(toWidth: number | null, toHeight: number | null): void {
    const frame = frameOf(context);
    if (frame === null) return;
    const size = sizeOf(frame);
    const factor = (to: number | null, from: number): number => to === null || from < 1e-6 || to <= 0 ? 1 : to / from;
    change(context, "Resize", scaleMatrix(frame, 0, 0, factor(toWidth, size.width), factor(toHeight, size.height)));
  }

  function turn(to: number): void {
    const frame = frameOf(context);
    if (frame !== null) change(context, "Turn", turnMatrix(pointIn(frame, 0.5, 0.5), to - sizeOf(frame).angle));
  }

  return {
    element,
    show() {
      const frame = frameOf(context);
      element.hidden = frame === null;
      element.disabled = context.selection.editable.length === 0;
      if (frame === null) return;
      const box = boundsOf(corners(frame));
      const size = sizeOf(frame);
      x.show(box.x - context.view.page.x);
      y.show(box.y - context.view.page.y);
      width.show(size.width);
      height.show(size.height);
      angle.show(size.angle);
      width.input.disabled = size.width < 1e-6;
      height.input.disabled = size.height < 1e-6;
    },
  };
}
