#include "platform/windows/KeyAccess.h"

#include "platform/windows/System.h"

// clang-format off (needs windows.h before it)
#include <aclapi.h>
// clang-format on

#include <memory>

namespace {

struct LocalFreer {
  void operator()(void* pMemory) const { LocalFree(pMemory); }
};

}  // namespace

// The group by its number: its name is another one in every language of the system.
std::int32_t GrantUsersFullAccess(const std::string& szPath) {
  BYTE aUsers[SECURITY_MAX_SID_SIZE];
  DWORD lSize = sizeof aUsers;
  if (!CreateWellKnownSid(WinBuiltinUsersSid, nullptr, aUsers, &lSize))
    return static_cast<std::int32_t>(GetLastError());

  std::string szName = szPath;  // the call wants it writable
  PACL pOld = nullptr;          // lies inside the descriptor
  PSECURITY_DESCRIPTOR pDescriptor = nullptr;
  DWORD lCode = GetNamedSecurityInfoA(szName.data(), SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr,
                                      nullptr, &pOld, nullptr, &pDescriptor);
  if (lCode != ERROR_SUCCESS) return static_cast<std::int32_t>(lCode);
  const std::unique_ptr<void, LocalFreer> aDescriptor(pDescriptor);

  EXPLICIT_ACCESSA aGrant{};
  aGrant.grfAccessPermissions = KEY_ALL_ACCESS;
  aGrant.grfAccessMode = GRANT_ACCESS;
  aGrant.grfInheritance = CONTAINER_INHERIT_ACE;
  aGrant.Trustee.TrusteeForm = TRUSTEE_IS_SID;
  aGrant.Trustee.TrusteeType = TRUSTEE_IS_WELL_KNOWN_GROUP;
  aGrant.Trustee.ptstrName = reinterpret_cast<char*>(aUsers);
  PACL pNew = nullptr;
  lCode = SetEntriesInAclA(1, &aGrant, pOld, &pNew);
  if (lCode != ERROR_SUCCESS) return static_cast<std::int32_t>(lCode);
  const std::unique_ptr<void, LocalFreer> aNew(pNew);
  return static_cast<std::int32_t>(SetNamedSecurityInfoA(
      szName.data(), SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, pNew, nullptr));
}
