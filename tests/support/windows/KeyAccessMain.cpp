// key-access PATH [SDDL]: prints who may use a key of the registry, in the security descriptor definition
// language; with SDDL, first makes it so. PATH begins with MACHINE or CURRENT_USER.
#include "platform/windows/System.h"

// clang-format off (needs windows.h before it)
#include <aclapi.h>
#include <sddl.h>
// clang-format on

#include <cstdio>

namespace {

DWORD SetAccess(char* szPath, const char* szSddl) {
  PSECURITY_DESCRIPTOR pDescriptor = nullptr;
  BOOL bPresent = FALSE, bDefaulted = FALSE;
  PACL pList = nullptr;
  if (!ConvertStringSecurityDescriptorToSecurityDescriptorA(szSddl, SDDL_REVISION_1, &pDescriptor, nullptr) ||
      !GetSecurityDescriptorDacl(pDescriptor, &bPresent, &pList, &bDefaulted))
    return GetLastError();
  return SetNamedSecurityInfoA(szPath, SE_REGISTRY_KEY,
                               DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, nullptr,
                               nullptr, pList, nullptr);
}

DWORD PrintAccess(char* szPath) {
  PSECURITY_DESCRIPTOR pDescriptor = nullptr;
  const DWORD lCode = GetNamedSecurityInfoA(szPath, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr,
                                            nullptr, nullptr, nullptr, &pDescriptor);
  if (lCode != ERROR_SUCCESS) return lCode;
  char* szText = nullptr;
  if (!ConvertSecurityDescriptorToStringSecurityDescriptorA(pDescriptor, SDDL_REVISION_1,
                                                            DACL_SECURITY_INFORMATION, &szText, nullptr))
    return GetLastError();
  std::puts(szText);
  return ERROR_SUCCESS;
}

}  // namespace

int main(int iCount, char** aValues) {
  if (iCount < 2) return 2;
  DWORD lCode = iCount > 2 ? SetAccess(aValues[1], aValues[2]) : ERROR_SUCCESS;
  if (lCode == ERROR_SUCCESS) lCode = PrintAccess(aValues[1]);
  if (lCode != ERROR_SUCCESS) std::fprintf(stderr, "key-access: error %lu\n", lCode);
  return lCode == ERROR_SUCCESS ? 0 : 1;
}
