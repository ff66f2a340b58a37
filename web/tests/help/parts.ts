import { Artwork } from "../../src/artwork/artwork";

Object.assign(globalThis, { parts: { Artwork } });
