// Shows the settings of remote administration (web port, web access, e-mail forms) and lets the administrator
// change them. Each is stored when its answer is accepted; a failure to store is not told (prescribed).
#include "install/console.h"
#include "install/mail_system/recorded_databases.h"
#include "install/mail_system/remote_settings.h"
#include "install/sentences.h"
#include "install/settings.h"
#include "install/steps.h"

namespace {

const SString kWebServer = "WWW-Server";
const SString kDispatch = "Dispatch";
const SString kTable = "/Config";

bool Open(Sdbfile* database, const SString& module) {
    RecordTable(module, kTable);
    return database->Open(kTable, 1) != 0;
}

void Set(Sdbfile* database, const SString& module, const SString& key, const SStringList& values) {
    RecordSetting(module, kTable, *database, key, values);
    database->Set(key, values);
}

bool TellUnopened() {
    Print("\n");
    Tell({"ERROR: Couldn't open a configuration database. There is probably a permission problem in the " +
              gstr_TernHarbor + "config directory.",
          OwnershipMessage(), ContactMessage()});
    Abort();
    Print("\n");
    return false;
}

void ShowSettings(const RemoteSettings& settings) {
    Tell(
        {"tern.harbor can be configured remotely using a graphical World-Wide-Web browser, or an E-mail "
         "client that supports MIME. The WWW configuration is handled by a server that is built into "
         "tern.harbor. The port used by this server can be modified so it doesn't conflict with a "
         "general-purpose WWW server operating on port 80, or any other service provided by this machine. "
         "Also the E-mail configuration mechanism can be turned on or off depending on your needs.",
         "tern.harbor is currently configured with the following settings:"});
    Print(SettingsTable(settings));
}

void AdviseAgainstPort80() {
    Print("\n");
    PrintParagraph(
        "Since the WWW configuration interface is not part of a general-purpose WWW server, you may want "
        "to change the port used for this to something other than the standard WWW port (80). The port "
        "should be chosen so that it does not conflict with any other service on this computer. "
        "Even-numbered ports between 26 and 40 are unassigned, so using one of them is recommended.");
}

/// The answer to whether the port, given as typed, is the one.
char ConfirmPort(const SString& typed, int port) {
    const bool standard = port == 80;
    if (!standard) Print("\n");
    Tell("tern.harbor will use port " + typed +
         " for WWW configuration, so you will need to connect to the server using the URL:");
    Print("\thttp://" + gstr_HostName + (standard ? SString() : ":" + SString(port)) + "\n\n");
    return Ask(standard ? QuestionId::ConfirmPort80 : QuestionId::ConfirmPort);
}

bool ChangePort(Sdbfile* www_server, int old_port) {
    if (old_port == 80) AdviseAgainstPort80();
    while (true) {
        Print("\n");
        const SString typed = AskLine(QuestionId::WebPort, SString(old_port));
        const int port = PortNumber(typed);
        if (!IsPort(port)) {
            Print("\n");
            PrintParagraph("Please enter a valid port number (in the range from 1 to 65535).");
            if (InputHasEnded() && !IsPort(old_port)) return Abort();
            continue;
        }
        const char answer = ConfirmPort(typed, port);
        if (answer == 'q') return false;
        if (answer == 'n') continue;
        Set(www_server, kWebServer, "Socket", typed);
        gn_WWWPort = port;
        return true;
    }
}

bool ChangeAccess(Sdbfile* www_server) {
    Print("\n");
    Tell(
        "Access to the WWW configuration interface has been restricted to the domains/networks listed "
        "above. If you would like to remove the restrictions, type \"yes\" here.");
    const char answer = Ask(QuestionId::RemoveAccess);
    if (answer == 'y') Set(www_server, kWebServer, "WWWAccess", {});
    return answer != 'q';
}

bool ChangeEmail(Sdbfile* dispatch, bool allowed) {
    Print("\n");
    Tell(
        "You can enable or disable the ability to configure tern.harbor using E-mail forms. "
        "If disabled, mail sent to <accounts@" +
        gstr_HostName + "> or <configuration@" + gstr_HostName +
        "> will be returned to sender with an error message.");
    const char answer = Ask(QuestionId::AllowEmail, allowed ? "yes" : "no");
    if (answer == 'n') Set(dispatch, kDispatch, "EmailConfig", "no");
    if (answer == 'y') Set(dispatch, kDispatch, "EmailConfig", "yes");
    return answer != 'q';
}

}  // namespace

bool ConfigureFeatures() {
    BeginProgress("Reading configuration information");
    Sdbfile www_server(kWebServer, 0);
    Sdbfile dispatch(kDispatch, 0);
    if (!Open(&www_server, kWebServer) || !Open(&dispatch, kDispatch)) return TellUnopened();
    const auto settings = ReadRemoteSettings(www_server, dispatch);
    if (!settings) return TellUnopened();
    gn_WWWPort = settings->port;
    EndProgress("done\n");

    ShowSettings(*settings);
    const char answer = Ask(QuestionId::ChangeRemote);
    if (answer != 'y') return answer != 'q';
    if (!ChangePort(&www_server, settings->port)) return false;
    if (!settings->access.IsEmpty() && !ChangeAccess(&www_server)) return false;
    if (!ChangeEmail(&dispatch, settings->by_email)) return false;
    Print("\n");
    return true;
}
