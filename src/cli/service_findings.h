#pragma once

#include "cli/finding.h"
#include "core/settings/folders.h"
#include "platform/credential_vault.h"

/// Which service the tools use, and whether it can be used as it is set. Sends nothing.
Finding serviceFinding(const Folders& folders);
/// Whether the user's credential can be kept. A missing keychain is a fault only where a credential is needed.
Finding keychainFinding(const Folders& folders, CredentialVault& vault);
