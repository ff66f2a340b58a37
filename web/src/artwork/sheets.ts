// The style sheets of an artwork. Its rules count in the shadow tree that holds it; its fonts are known to documents
// alone, so they go there for as long as the artwork is shown.
import { reachesOut } from "./safe";

export class Sheets {
  readonly #fonts = new CSSStyleSheet();
  readonly #rules = new CSSStyleSheet();
  readonly #tree: ShadowRoot;

  constructor(tree: ShadowRoot) {
    this.#tree = tree;
    document.adoptedStyleSheets.push(this.#fonts);
    tree.adoptedStyleSheets.push(this.#rules);
  }

  add(text: string): void {
    const sheet = new CSSStyleSheet();
    sheet.replaceSync(text);
    for (const rule of sheet.cssRules) {
      if (reachesOut(rule.cssText)) continue;
      const target = rule instanceof CSSFontFaceRule ? this.#fonts : this.#rules;
      target.insertRule(rule.cssText, target.cssRules.length);
    }
  }

  remove(): void {
    document.adoptedStyleSheets = document.adoptedStyleSheets.filter(sheet => sheet !== this.#fonts);
    this.#tree.adoptedStyleSheets = this.#tree.adoptedStyleSheets.filter(sheet => sheet !== this.#rules);
  }
}
