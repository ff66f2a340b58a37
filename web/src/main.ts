import "../style/app.css";
import "./editor/editor.css";
import { keyHelp, makeEditor } from "./editor/editor";
import { makeShell } from "./views/shell";

const shell = makeShell(document.body);
shell.start(makeEditor(shell.canvas, shell.panel, shell.toolbar), keyHelp);
