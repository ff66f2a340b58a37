// Names of elements and attributes.

export const svgSpace = "http://www.w3.org/2000/svg";

export const spaces: Readonly<Record<string, string>> = {
  xml: "http://www.w3.org/XML/1998/namespace",
  xlink: "http://www.w3.org/1999/xlink",
  inkscape: "http://www.inkscape.org/namespaces/inkscape",
  sodipodi: "http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd",
};

export function spaceOf(name: string): string | null {
  const colon = name.indexOf(":");
  if (name.startsWith("xmlns:")) return "http://www.w3.org/2000/xmlns/";
  return colon < 0 ? null : spaces[name.slice(0, colon)] ?? null;
}

export function writeAttribute(element: Element, name: string, value: string | null): void {
  if (value === null) element.removeAttribute(name);
  else element.setAttributeNS(spaceOf(name), name, value);
}
