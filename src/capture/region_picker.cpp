#include "capture/region_picker.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kRefusalToast = 8s;

}  // namespace

/// Where the system has no page of settings for it, what to do instead is the system's own sentence.
bool RegionPicker::isAllowed(ToastContent icon) {
  Permissions& permissions = services_.permissions;
  if (permissions.state(Permission::screenRecording) == PermissionState::granted) return true;
  // Only who has asked stands on the page of the settings.
  permissions.request(Permission::screenRecording);
  const bool hasPage = permissions.hasSettingsPage(Permission::screenRecording);
  const QString page = u"Enable Vantle in %1 → Privacy, then relaunch"_s.arg(services_.system.systemSettings());
  icon.title = u"Screen Recording permission needed"_s;
  icon.detail = hasPage ? page : permissions.remedy(Permission::screenRecording);
  services_.toasts.show(std::move(icon), kRefusalToast);
  if (hasPage) permissions.openSettingsPage(Permission::screenRecording);
  return false;
}

void RegionPicker::pick(const QString& label, const QString& icon, const JobRef& job, RegionSelector::Completion done) {
  services_.regions.begin(label, icon, job.bind(std::move(done)));
}
