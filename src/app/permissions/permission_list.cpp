#include "app/permissions/permission_list.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr auto kPollInterval = 1s;

}  // namespace

PermissionList::PermissionList(Permissions& permissions, Clock& clock)
    : permissions_(permissions), clock_(clock), entries_(look()), shortcutsRemedy_(permissions.shortcutsRemedy()) {}

bool PermissionList::isGranted(Permission permission) const {
  const auto entry = std::ranges::find(entries_, permission, &Entry::permission);
  return entry != entries_.end() && entry->state == PermissionState::granted;
}

bool PermissionList::isAnyMissing() const {
  return std::ranges::find(entries_, PermissionState::notGranted, &Entry::state) != entries_.end();
}

void PermissionList::refresh() {
  auto now = look();
  QString shortcuts = permissions_.shortcutsRemedy();
  if (now == entries_ && shortcuts == shortcutsRemedy_) return;
  entries_ = std::move(now);
  shortcutsRemedy_ = std::move(shortcuts);
  Q_EMIT changed();
}

void PermissionList::setWatched(bool watched) {
  if (watched == watch_.isRunning()) return;
  watch_ = watched ? Job::start() : Job();
  if (watched) poll();
}

void PermissionList::lead(Permission permission) {
  permissions_.request(permission);
  permissions_.openSettingsPage(permission);
}

std::vector<PermissionList::Entry> PermissionList::look() const {
  std::vector<Entry> entries;
  for (const auto& [permission, name] : kPermissionNames) {
    entries.push_back({permission, name, permissions_.state(permission), permissions_.remedy(permission),
                       permissions_.hasSettingsPage(permission)});
  }
  return entries;
}

void PermissionList::poll() {
  // The next look comes first: whoever hears of a change may end the watch.
  clock_.after(kPollInterval, watch_, [this] { poll(); });
  refresh();
}
