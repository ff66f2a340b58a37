// Start tags: one that has other values in some attributes, and the same characters everywhere else.

// A value of null: the attribute is not there.
export type Values = ReadonlyMap<string, string | null>;

interface Written {
  readonly name: string;
  readonly start: number; // with the blanks in front of the name
  readonly value: number;
  readonly end: number; // of the value, without its quote
}

const attributePattern = /\s+([^\s=/>]+)\s*=\s*(?:"([^"]*)"|'([^']*)')/g;

function attributesOf(tag: string): Written[] {
  const found: Written[] = [];
  for (const match of tag.matchAll(attributePattern)) {
    const end = match.index + match[0].length - 1;
    const length = (match[2] ?? match[3] ?? "").length;
    found.push({ name: match[1] ?? "", start: match.index, value: end - length, end });
  }
  return found;
}

export function patchTag(tag: string, values: Values): string {
  const left = new Map(values);
  let out = "";
  let at = 0;
  for (const attribute of attributesOf(tag)) {
    const value = left.get(attribute.name);
    if (value === undefined) continue;
    left.delete(attribute.name);
    if (value === null) {
      out += tag.slice(at, attribute.start);
      at = attribute.end + 1;
    } else {
      out += tag.slice(at, attribute.value) + escapeValue(value, tag.charAt(attribute.end));
      at = attribute.end;
    }
  }
  const ending = tag.endsWith("/>") ? tag.length - 2 : tag.length - 1;
  out += tag.slice(at, ending).trimEnd();
  for (const [name, value] of left) if (value !== null) out += attributeText(name, value);
  return out + tag.slice(ending);
}

export function attributeText(name: string, value: string): string {
  return ` ${name}="${escapeValue(value, "\"")}"`;
}

const inValue: Readonly<Record<string, string>> = {
  "&": "&amp;", "<": "&lt;", ">": "&gt;", "\"": "&quot;", "'": "&apos;", "\t": "&#9;", "\n": "&#10;", "\r": "&#13;",
};

function escapeValue(value: string, quote: string): string {
  const pattern = quote === "'" ? /[&<>'\t\n\r]/g : /[&<>"\t\n\r]/g;
  return cleaned(value).replace(pattern, letter => inValue[letter] ?? letter);
}

export function escapeText(text: string): string {
  return cleaned(text).replace(/[&<>\r]/g, letter => inValue[letter] ?? letter);
}

// Without the characters that XML cannot hold.
function cleaned(text: string): string {
  return text.replace(/[\u0000-\u0008\u000b\u000c\u000e-\u001f\ud800-\udfff\ufffe\uffff]/gu, "");
}
