// Pictures: one put in the place of another, or new on the page.
import type { Artwork } from "../artwork/artwork";
import { ownMatrix, matrixText, pageMatrix, type Point } from "../artwork/geometry";
import { numberText } from "../artwork/numbers";
import { isEditable } from "../artwork/kinds";
import { dropStyle } from "../artwork/colours";
import { placeForNew } from "./arrange";
import type { Context } from "./context";

// A page holds PNG and JPEG. What else the browser can show becomes a PNG.
const kept = ["image/png", "image/jpeg"];
const pointsPerPixel = 72 / 96;
const largestPart = 0.6; // of the page that a new picture takes

interface Picture {
  readonly address: string;
  readonly width: number;
  readonly height: number;
}

export async function readPicture(file: Blob): Promise<Picture> {
  const bitmap = await createImageBitmap(file);
  const { width, height } = bitmap;
  const blob = kept.includes(file.type) ? file : await asPng(bitmap);
  bitmap.close();
  return { address: await dataAddress(blob), width, height };
}

async function asPng(bitmap: ImageBitmap): Promise<Blob> {
  const canvas = new OffscreenCanvas(bitmap.width, bitmap.height);
  canvas.getContext("2d")?.drawImage(bitmap, 0, 0);
  return canvas.convertToBlob({ type: "image/png" });
}

function dataAddress(blob: Blob): Promise<string> {
  return new Promise((resolve, reject) => {
    const reader = new FileReader();
    reader.onload = () => resolve(String(reader.result));
    reader.onerror = () => reject(reader.error ?? new Error("not read"));
    reader.readAsDataURL(blob);
  });
}

export class Pictures {
  readonly #context: Context;
  readonly #chooser: HTMLInputElement;
  #chosen: ((file: File) => void) | null = null;

  constructor(context: Context) {
    this.#context = context;
    this.#chooser = document.createElement("input");
    Object.assign(this.#chooser, { type: "file", accept: "image/png,image/jpeg,image/webp,image/gif,image/bmp,image/avif", hidden: true });
    this.#chooser.className = "editor-picture-file";
    this.#chooser.setAttribute("aria-label", "Picture file");
    this.#chooser.addEventListener("change", () => {
      const file = this.#chooser.files?.[0];
      if (file !== undefined) this.#chosen?.(file);
      this.#chooser.value = "";
    });
    context.view.stage.append(this.#chooser);
    const { stage } = context.view;
    stage.addEventListener("dragover", event => event.preventDefault());
    stage.addEventListener("drop", event => this.#drop(event));
  }

  chooseNew(): void { this.#choose(file => void this.insert(file)); }

  chooseInstead(image: SVGImageElement, keepsShape: boolean): void {
    this.#choose(file => void this.replace(image, file, keepsShape));
  }

  // Keeps place and size; with its own shape it is as large as fits.
  async replace(image: SVGImageElement, file: Blob, keepsShape = false): Promise<void> {
    await this.#with(file, (artwork, picture) => {
      if (!artwork.root.contains(image) || !isEditable(image)) return;
      artwork.run("Replace picture", () => {
        setAddress(artwork, image, picture.address);
        for (const name of ["image-rendering", "data-image-rendering"]) artwork.set(image, name, null);
        dropStyle(artwork, image, "image-orientation");
        if (keepsShape) fit(artwork, image, picture);
      });
      this.#context.selection.set([image]);
    });
  }

  async insert(file: Blob, at?: Point): Promise<void> {
    await this.#with(file, (artwork, picture) => {
      const parent = placeForNew(this.#context, artwork);
      if (parent === null) return;
      const { page, seen } = this.#context.view;
      const scale = Math.min(pointsPerPixel, page.width * largestPart / picture.width, page.height * largestPart / picture.height);
      const width = picture.width * scale;
      const height = picture.height * scale;
      const centre = at ?? { x: seen.x + seen.width / 2, y: seen.y + seen.height / 2 };
      const place = pageMatrix(artwork.root, parent).inverse();
      const made = artwork.create("image", {
        x: numberText(centre.x - width / 2), y: numberText(centre.y - height / 2),
        width: numberText(width), height: numberText(height), preserveAspectRatio: "none",
      });
      const turned = matrixText(place);
      if (turned !== null) made.setAttribute("transform", turned);
      setHref(made, artwork.root, picture.address);
      artwork.run("New picture", () => artwork.insert(made, parent, null));
      this.#context.selection.set([made]);
    });
  }

  #choose(chosen: (file: File) => void): void {
    this.#chosen = chosen;
    this.#chooser.click();
  }

  #drop(event: DragEvent): void {
    const file = event.dataTransfer?.files[0];
    if (file === undefined) return;
    event.preventDefault();
    const { view, artwork } = this.#context;
    const under = view.tree.elementFromPoint(event.clientX, event.clientY)?.closest("image");
    if (under instanceof SVGImageElement && artwork?.root.contains(under) === true) void this.replace(under, file);
    else void this.insert(file, view.toPage(view.pointOf(event)));
  }

  async #with(file: Blob, work: (artwork: Artwork, picture: Picture) => void): Promise<void> {
    const { artwork } = this.#context;
    if (artwork === null) return;
    this.#context.settle();
    try {
      const picture = await readPicture(file);
      // Another page may be here by now.
      if (this.#context.artwork === artwork) work(artwork, picture);
    } catch {
      this.#context.say("This file is not a picture that can be put on a page. PNG and JPEG can.");
    }
  }
}

function setAddress(artwork: Artwork, image: SVGImageElement, address: string): void {
  if (image.hasAttribute("href") || !hasLinkNames(artwork.root)) artwork.set(image, "href", address);
  else artwork.set(image, "xlink:href", address);
}

function setHref(image: SVGElement, root: Element, address: string): void {
  if (hasLinkNames(root)) image.setAttributeNS("http://www.w3.org/1999/xlink", "xlink:href", address);
  else image.setAttribute("href", address);
}

function hasLinkNames(root: Element): boolean {
  return root.lookupNamespaceURI("xlink") !== null;
}

function fit(artwork: Artwork, image: SVGImageElement, picture: Picture): void {
  const own = ownMatrix(image);
  const { x, y, width, height } = image.getBBox();
  const shownWidth = width * Math.hypot(own.a, own.b);
  const shownHeight = height * Math.hypot(own.c, own.d);
  const scale = Math.min(shownWidth / picture.width, shownHeight / picture.height);
  const sx = picture.width * scale / shownWidth;
  const sy = picture.height * scale / shownHeight;
  const cx = x + width / 2;
  const cy = y + height / 2;
  artwork.set(image, "transform", matrixText(own.translate(cx, cy).scale(sx, sy).translate(-cx, -cy)));
}
