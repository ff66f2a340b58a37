// Numbers, sizes, dates and lists as people write them.

const thousands = new Intl.NumberFormat("en-GB");
const tenths = new Intl.NumberFormat("en-GB", { maximumFractionDigits: 1 });
const day = new Intl.DateTimeFormat("en-GB", {
  day: "numeric", month: "short", year: "numeric", hour: "2-digit", minute: "2-digit",
});

export function number(value: number): string {
  return thousands.format(value);
}

// "1 page", "2 pages"; another plural where one is given.
export function counted(count: number, one: string, many = `${one}s`): string {
  return `${number(count)} ${count === 1 ? one : many}`;
}

// "812 bytes", "28.2 kB", "3.4 MB": 1 kB is 1,000 bytes.
export function size(bytes: number): string {
  if (bytes < 10_000) {
    return counted(bytes, "byte");
  }
  return bytes < 1_000_000 ? `${tenths.format(bytes / 1000)} kB` : `${tenths.format(bytes / 1_000_000)} MB`;
}

// "22 Nov 2026, 12:56", in the time of this machine.
export function date(text: string | null): string {
  const time = text === null ? Number.NaN : Date.parse(text);
  return Number.isNaN(time) ? "date not known" : day.format(time);
}

// "a", "a and b", "a, b and c".
export function listed(items: readonly string[]): string {
  const last = items.at(-1) ?? "";
  return items.length < 2 ? last : `${items.slice(0, -1).join(", ")} and ${last}`;
}

// "pages 1, 2 and 5"; of many the first ones.
export function pages(list: readonly number[]): string {
  const most = 6;
  if (list.length === 0) {
    return "no page";
  }
  if (list.length > most) {
    return `${counted(list.length, "page")}: ${list.slice(0, most).join(", ")} ...`;
  }
  return `${list.length === 1 ? "page" : "pages"} ${listed(list.map(String))}`;
}

// Made a sentence of its own: a capital in front, a full stop behind.
export function sentence(text: string): string {
  const whole = text.trim();
  if (whole === "") {
    return "";
  }
  const first = whole.charAt(0).toUpperCase() + whole.slice(1);
  return /[.!?:]$/.test(first) ? first : `${first}.`;
}

// What the program says of an error, without the advice for a command line: options that a page
// has no place to type.
export function plain(text: string): string {
  const option = /\s--[a-z]/;
  const clauses = text
    .replace(/,? or (?:replace|undo|say)[^;,]*--[a-z-]+[^;,]*/g, "")
    .split("; ")
    .filter((clause) => !option.test(clause));
  return sentence(clauses.join("; "));
}
