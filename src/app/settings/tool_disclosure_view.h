#pragma once

class QWidget;
class SettingsSection;
class SystemInfo;

/// Adds a row for every tool that says what it sends.
void addToolDisclosures(SettingsSection& section, const SystemInfo& system);
