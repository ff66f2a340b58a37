// The small picture of itself that a page carries.

import type { PageFacts } from "../../server/reports";
import { pageSize } from "./rows";

// Of height to width: small pictures have whole pixels.
const tolerance = 0.1;

// Whether a picture of this size can be the page as it is seen. Of turned pages nobody knows whether it was made before
// the page was turned or after.
export function canShow(page: PageFacts, width: number, height: number): boolean {
  const seen = pageSize(page);
  return page.rotate === 0 && Math.abs(Math.log((width / height) / (seen.width / seen.height))) < tolerance;
}

export async function ownPicture(png: Blob, page: PageFacts, width: number, height: number): Promise<HTMLCanvasElement> {
  const image = await createImageBitmap(png);
  try {
    const canvas = document.createElement("canvas");
    canvas.width = width;
    canvas.height = height;
    const brush = canvas.getContext("2d");
    if (brush === null || !canShow(page, image.width, image.height)) {
      throw new Error("the picture is not of this page");
    }
    brush.imageSmoothingQuality = "high";
    brush.drawImage(image, 0, 0, width, height);
    return canvas;
  } finally {
    image.close();
  }
}
