// Dark or light: as the system says, until the person says otherwise.

const key = "corvane-theme";
const dark = matchMedia("(prefers-color-scheme: dark)");

export function isDark(): boolean {
  const said = document.documentElement.dataset["theme"];
  return said === undefined ? dark.matches : said === "dark";
}

// What was chosen before on this machine.
export function restoreTheme(): void {
  const said = stored();
  if (said === "dark" || said === "light") {
    document.documentElement.dataset["theme"] = said;
  }
}

export function switchTheme(): void {
  const said = isDark() ? "light" : "dark";
  document.documentElement.dataset["theme"] = said;
  try {
    localStorage.setItem(key, said);
  } catch {
    // A browser that keeps nothing: the choice holds for this tab.
  }
}

function stored(): string | null {
  try {
    return localStorage.getItem(key);
  } catch {
    return null;
  }
}
