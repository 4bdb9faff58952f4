/* A daemon of somebody else: creates a domain in a database below the directory it is given. */
#include <aaadom/aaadom.h>
#include <platform/aaa_tlv.h>
#include <stdio.h>

static uint32_t on_configuration_thread(void) {
    return 1;
}

int main(int argc, char** argv) {
    if (argc != 2 || DBM_SetRoot(argv[1], argv[1]) != 0) return 2;
    AAADService callbacks = {.is_cfg_thread = on_configuration_thread};
    DOM_SetAAADService(&callbacks);
    if (DOM_DomainInfoTableInit() != DOM_OK) return 3;
    DBM_HANDLE database = DOM_CreateDomainDBM();
    if (database == DBM_INVALID_HANDLE) return 4;
    DOM_SetDomainDBMHandle(database);

    TLV_MSG* message = DOM_EncodeDomainName("corp");
    TLV_MSG* request = AAA_AddOpHead(DOM_OP_SET, message);
    char changed[DOM_NAME_SIZE] = "";
    uint32_t result = DOM_RestoreData(request, 1, sizeof changed, 0, changed, NULL);
    TLV_Destroy(request);
    TLV_Destroy(message);
    if (result == DOM_OK) printf("changed and saved: %s\n", changed);

    DOM_DomainInfoTableFini();
    DOM_ResetAAADService();
    DBM_Close(database);
    return result != DOM_OK;
}
