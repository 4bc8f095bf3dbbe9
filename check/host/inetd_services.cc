#include "check/host/inetd_services.h"

#include "install/host/inetd.h"
#include "install/settings.h"
#include "support/system/identity.h"

SStringList ServicesToTakeFromInetd() {
    const AsRoot root;
    const auto lines = ReadHostFile(gstr_InetdConf);
    return lines ? InetdConflicts(*lines) : SStringList();
}

bool HoldsOneOf(const SStringList& services, const SString& service) {
    return services.Contains(service) || services.Contains(InetdAlias(service));
}
