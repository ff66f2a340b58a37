// Kinds of things that a page shows and its artwork does not hold, in words: what they are, and why.

interface KindWords {
  readonly one: string;
  readonly many: string;
  readonly why: string;
}

const unread = "it is damaged, or of a kind that is not read";
const kinds: Readonly<Record<string, KindWords>> = {
  text: { one: "piece of text", many: "pieces of text", why: "its font cannot be read, or it clips other things" },
  image: { one: "image", many: "images", why: "its data are damaged, or coded in a way that is not read" },
  form: { one: "reused drawing", many: "reused drawings", why: "it draws itself, or is too deep" },
  shading: { one: "smooth shading", many: "smooth shadings", why: unread },
  other: { one: "object of an unknown kind", many: "objects of unknown kinds", why: "no version of PDF describes it" },
  pattern: { one: "use of a pattern as a colour", many: "uses of patterns as colours", why: unread },
  colourSpace: { one: "use of an unusual colour", many: "uses of unusual colours", why: "its colour space is not read" },
  colourProfile: { one: "use of a colour profile", many: "uses of colour profiles", why: "the profile cannot be read" },
  ink: { one: "use of a named ink", many: "uses of named inks", why: "what stands for it cannot be read" },
  transparency: { one: "transparency setting", many: "transparency settings", why: "drawings of this profile are opaque" },
  softMask: { one: "transparency mask", many: "transparency masks", why: unread },
  overprint: { one: "overprint setting", many: "overprint settings", why: "SVG does not know how inks lie over one another" },
  renderingIntent: { one: "colour matching setting", many: "colour matching settings", why: "SVG has none" },
  deviceSetting: { one: "setting for the printer", many: "settings for the printer", why: "SVG has none" },
  optionalContent: { one: "part in a layer", many: "parts in layers", why: "what says the layer stands where it is not read" },
  markedContent: { one: "tag", many: "tags", why: "tags are not seen on the page" },
  unknownOperator: { one: "unknown drawing command", many: "unknown drawing commands", why: "no version of PDF describes it" },
  damagedOperator: { one: "damaged drawing command", many: "damaged drawing commands", why: "it was skipped" },
  longDash: { one: "long dash pattern", many: "long dash patterns", why: "it has more than six lengths" },
  unequalStrokeScale: { one: "line of uneven width", many: "lines of uneven width", why: "SVG draws it with its mean width" },
  farPoint: { one: "point far from the page", many: "points far from the page", why: "it is moved to the edge" },
};

export interface Omission {
  readonly what: string;
  readonly why: string;
}

export function omission(kind: string, count: number): Omission {
  const words = kinds[kind];
  if (words === undefined) {
    return { what: `${count} of a kind that this page does not know (${kind})`, why: "" };
  }
  return { what: `${count} ${count === 1 ? words.one : words.many}`, why: words.why };
}
