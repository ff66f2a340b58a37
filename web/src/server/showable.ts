// What others named: files of strangers, pages of their PDFs.

// Control characters, marks that turn the direction of what follows, ends of lines.
const misleading = /[\p{Cc}\p{Bidi_Control}\u2028\u2029]/gu;

// With the numbers of characters in the place of those that hide what a name is: "bill\u202efdp.exe".
export function showable(name: string): string {
  return name.replace(misleading, (character) => `\\u${character.charCodeAt(0).toString(16).padStart(4, "0")}`);
}
