#include "tools/inject_md/well_known_templates.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kAgents =
    uR"(# AGENTS.md

Instructions for AI coding agents working in this repository.

## Project

<!-- What this project is, who uses it, and where its main parts live. -->

## Conventions

- Match the style of the surrounding code.
- Keep changes focused; don't reformat unrelated lines.
<!-- Naming, error handling and layout rules that the code does not show by itself. -->

## Commands

- Build: `<build command>`
- Test: `<test command>`
<!-- Lint, format and run commands, and what has to be running first. -->

## Notes

<!-- Traps, fragile places, and anything an agent should not touch. -->
)";

constexpr auto kClaude =
    uR"(# CLAUDE.md

Guidance for Claude Code in this repository.

## Project

<!-- What this project is, who uses it, and where its main parts live. -->

## Commands

- Build: `<build command>`
- Test: `<test command>`
<!-- Lint, format and run commands, and how to run a single test. -->

## Conventions

- Match the style of the surrounding code.
- Keep changes focused; don't reformat unrelated lines.
<!-- Naming, error handling and layout rules that the code does not show by itself. -->
)";

constexpr auto kBootstrap =
    uR"(# BOOTSTRAP.md

First-run setup for this project — what an agent (or human) needs
to do once, before the first build succeeds.

## Prerequisites

<!-- Compilers, runtimes, package managers, accounts and keys, with their versions. -->

## Setup

<!-- The commands in order, from a fresh clone to a passing test run. -->
)";

constexpr auto kSoul =
    uR"(# SOUL.md

Who this agent is and how it should carry itself in this project.

## Voice

<!-- How it writes: tone, length, language, what it leaves out. -->

## Values

<!-- What it puts first when goals compete: correctness, speed, simplicity. -->

## Boundaries

<!-- What it never does, and what it asks about before doing. -->
)";

constexpr auto kBacklog =
    uR"(# BACKLOG.md

Running list of work for this project. Agents: pick from the top,
and move what is finished to Done.

## Now

- [ ] <!-- The task to take up next, small enough to finish in one go. -->

## Later

- [ ] <!-- Worth doing, not yet. -->

## Done

<!-- Finished tasks, newest first. -->
)";

}  // namespace

const std::array<WellKnownTemplate, 5> wellKnownTemplates = {{
    {"AGENTS.md"_L1, kAgents},
    {"CLAUDE.md"_L1, kClaude},
    {"BOOTSTRAP.md"_L1, kBootstrap},
    {"SOUL.md"_L1, kSoul},
    {"BACKLOG.md"_L1, kBacklog},
}};

QString wellKnownTemplate(const QString& fileName) {
  const auto found = std::ranges::find(wellKnownTemplates, fileName, &WellKnownTemplate::fileName);
  return found == wellKnownTemplates.end() ? QString() : found->contents.toString();
}
