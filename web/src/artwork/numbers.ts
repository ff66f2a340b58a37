// Numbers as artwork has them: five digits behind the point, no more than say something.

export function numberText(value: number): string {
  const text = (Math.round(value * 1e5) / 1e5).toFixed(5).replace(/\.?0+$/, "");
  if (text === "-0" || text === "") return "0";
  return text.replace(/^(-?)0\./, "$1.");
}

export function numbersOf(text: string | null): number[] {
  return (text ?? "").split(/[\s,]+/).filter(word => word !== "").map(Number);
}
