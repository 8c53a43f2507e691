#pragma once

#include <memory>

#include "platform/credential_vault.h"

/// The system's keychain: Keychain Services on macOS, the Secret Service (GNOME Keyring, KWallet) elsewhere. Its
/// libraries are loaded at the first use.
std::unique_ptr<CredentialVault> makeKeychainVault();
