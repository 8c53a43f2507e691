#pragma once

/// From then on screen readers take our windows for windows, and lists and areas to read in for such: as plain widgets
/// they would be boxes among others.
void installAccessibleRoles();
