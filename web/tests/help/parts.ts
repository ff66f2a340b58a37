import "../../src/editor/editor.css";
import { Artwork } from "../../src/artwork/artwork";
import { Letters } from "../../src/artwork/letters";
import { makeEditor } from "../../src/editor/editor";

const place = (id: string): HTMLElement => document.getElementById(id) as HTMLElement;

Object.assign(globalThis, {
  parts: { Artwork, Letters, makeEditor: () => makeEditor(place("canvas"), place("panel"), place("toolbar")) },
});
