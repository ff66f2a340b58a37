// One request to the server: its time limit, and its failures as faults.

import { ServerFault } from "./fault";

export interface RequestOptions {
  readonly method?: "GET" | "POST";
  readonly body?: string;
  readonly headers?: Readonly<Record<string, string>>;
  // Ends the request where the answer is not wanted any more; that raises an AbortError.
  readonly signal?: AbortSignal | undefined;
  // Milliseconds.
  readonly limit: number;
}

export function requestText(path: string, options: RequestOptions): Promise<string> {
  return request(path, options, (answer) => answer.text());
}

export function requestBytes(path: string, options: RequestOptions): Promise<Blob> {
  return request(path, options, (answer) => answer.blob());
}

// The whole body of the answer.
async function request<Body>(path: string, options: RequestOptions, read: (answer: Response) => Promise<Body>): Promise<Body> {
  const ending = new AbortController();
  const end = () => ending.abort();
  const timer = setTimeout(end, options.limit);
  options.signal?.addEventListener("abort", end);
  const isUnwanted = () => options.signal?.aborted ?? false;
  try {
    if (isUnwanted()) {
      end();
    }
    const answer = await fetch(path, {
      method: options.method ?? "GET",
      headers: options.headers ?? {},
      body: options.body ?? null,
      signal: ending.signal,
      cache: "no-store",
      redirect: "error",
    });
    if (!answer.ok) {
      throw refusal(answer.status, await answer.text());
    }
    return await read(answer);
  } catch (error) {
    if (error instanceof ServerFault) {
      throw error;
    }
    if (isUnwanted()) {
      throw new DOMException("not wanted any more", "AbortError");
    }
    throw ending.signal.aborted
      ? new ServerFault("late", 0, "the program takes too long to answer")
      : new ServerFault("lost", 0, "the program does not answer any more");
  } finally {
    clearTimeout(timer);
    options.signal?.removeEventListener("abort", end);
  }
}

// What the server says of a request that it refused.
function refusal(status: number, text: string): ServerFault {
  try {
    const { error } = JSON.parse(text) as { error: { code: number; sentence: string } };
    return new ServerFault("refused", error.code, error.sentence);
  } catch {
    return new ServerFault("refused", 0, `the program refused the request (${status})`);
  }
}
