"""Writes histories of agent transcripts, true in shape and in size, the same at every run."""

import json
import os
import random
import uuid
from pathlib import Path

WORDS = "the retry queue drops its oldest entry when a worker restarts so keep the order and log what was lost".split()
# Of real histories: half of the files below 60 KB, one in a hundred above a megabyte.
MEDIAN_BYTES, SPREAD = 60_000, 1.25
LARGEST_BYTES = 30_000_000
PROJECTS = 60
NEWEST = 1_780_000_000


def write_history(home, files, seed=7, work="/home/ana/work"):
    """`files` transcripts below `home` of projects below `work`, three of Claude Code for one of Codex. Returns their bytes."""
    chance = random.Random(seed)
    filler = [line.encode() + b"\n" for line in filler_lines(chance)]
    total = 0
    for number in range(files):
        cwd = f"{work}/project-{number % PROJECTS:02d}"
        size = min(int(chance.lognormvariate(0, SPREAD) * MEDIAN_BYTES), LARGEST_BYTES)
        write = claude if number % 4 else codex
        path, head, tail = write(Path(home), chance, number, cwd)
        path.parent.mkdir(parents=True, exist_ok=True)
        with open(path, "wb") as file:
            file.write(head)
            written = len(head) + len(tail)
            while written < size:
                line = chance.choice(filler)
                file.write(line)
                written += len(line)
            file.write(tail)
        os.utime(path, (NEWEST - 97 * number, NEWEST - 97 * number))
        total += path.stat().st_size
    return total


def make_projects(work):
    """The folders that `write_history` names, each with the files of some kind of project in it."""
    for number in range(PROJECTS):
        folder = Path(work) / f"project-{number:02d}"
        folder.mkdir(parents=True)
        kind = ("package.json", "pyproject.toml", "Cargo.toml", "go.mod", "CMakeLists.txt")[number % 5]
        for name in (kind, "README.md", "LICENSE", ".gitignore"):
            (folder / name).touch()


def claude(home, chance, number, cwd):
    session = str(uuid.UUID(int=chance.getrandbits(128), version=4))
    common = {"cwd": cwd, "sessionId": session, "version": "2.1.270", "gitBranch": "main"}
    prompt = {"type": "user", "message": {"role": "user", "content": f"{sentence(chance)} ({number})"}} | common
    head = lines([{"type": "mode", "mode": "normal", "sessionId": session}, prompt | {"isSidechain": False}])
    ends = [{"type": "last-prompt", "lastPrompt": sentence(chance), "leafUuid": "l", "sessionId": session}]
    if number % 3:
        ends.insert(0, {"type": "ai-title", "aiTitle": f"{sentence(chance)[:40]} ({number})", "sessionId": session})
    folder = "".join(letter if letter.isalnum() else "-" for letter in cwd)
    return home / ".claude/projects" / folder / f"{session}.jsonl", head, lines(ends)


def codex(home, chance, number, cwd):
    session = str(uuid.UUID(int=chance.getrandbits(128), version=4))
    meta = {"id": session, "cwd": cwd, "source": "cli", "thread_source": "user", "git": {"branch": "main"}}
    meta["base_instructions"] = {"text": " ".join(chance.choices(WORDS, k=4000))}
    records = [{"type": "session_meta", "payload": meta}]
    words = f"{sentence(chance)} ({number})"
    if number % 8:
        item = {"type": "UserMessage", "id": "i", "content": [{"type": "text", "text": words}]}
        records.append({"type": "event_msg", "payload": {"type": "item_completed", "item": item}})
    else:
        records.append({"type": "event_msg", "payload": {"type": "user_message", "message": words, "images": []}})
    day = f"2026/{1 + number % 12:02d}/{1 + number % 28:02d}"
    return home / ".codex/sessions" / day / f"rollout-2026-01-01T00-00-00-{session}.jsonl", lines(records), b""


def filler_lines(chance):
    """What agents write most: answers, tool calls and their results."""
    for _ in range(200):
        answer = {"type": "assistant", "message": {"role": "assistant", "content": [{"type": "text", "text": sentence(chance, 60)}]}}
        yield json.dumps(answer | {"isSidechain": False, "uuid": str(chance.random())}, separators=(",", ":"))
        result = {"type": "user", "message": {"role": "user", "content": [{"type": "tool_result", "content": sentence(chance, 200)}]}}
        yield json.dumps(result | {"toolUseResult": {"stdout": sentence(chance, 200)}}, separators=(",", ":"))


def sentence(chance, words=8):
    return " ".join(chance.choices(WORDS, k=words))


def lines(records):
    return b"".join(json.dumps(record, separators=(",", ":")).encode() + b"\n" for record in records)
