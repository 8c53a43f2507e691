"""Transcripts as the terminal agents leave them, in the home of the program under test."""

import json
import os
import time
import uuid
from pathlib import Path

# Files below this size are taken for stubs.
STUB = 400


def claude_session(home, cwd, prompts, title=None, minutes_ago=0):
    """Writes a conversation of Claude Code's and returns its id."""
    session = str(uuid.uuid4())
    place = {"cwd": cwd, "sessionId": session, "gitBranch": "main"}
    records = [{"type": "user", "message": {"role": "user", "content": prompt}} | place for prompt in prompts]
    if title:
        records.append({"type": "ai-title", "aiTitle": title, "sessionId": session})
    folder = "".join(letter if letter.isascii() and letter.isalnum() else "-" for letter in cwd)
    _write(Path(home) / ".claude/projects" / folder / f"{session}.jsonl", records, minutes_ago)
    return session


def codex_session(home, cwd, prompt, minutes_ago=0):
    """The same of Codex's."""
    session = str(uuid.uuid4())
    records = [
        {"type": "session_meta", "payload": {"id": session, "cwd": cwd, "source": "cli", "git": {"branch": "dev"}}},
        {"type": "event_msg", "payload": {"type": "user_message", "message": prompt, "images": []}},
    ]
    _write(Path(home) / ".codex/sessions/2026/11/20" / f"rollout-x-{session}.jsonl", records, minutes_ago)
    return session


def _write(path, records, minutes_ago):
    path.parent.mkdir(parents=True, exist_ok=True)
    lines = [json.dumps(record, separators=(",", ":")) for record in records]
    path.write_text("\n".join(lines).ljust(STUB, "\n") + "\n")
    when = time.time() - 60 * minutes_ago
    os.utime(path, (when, when))
