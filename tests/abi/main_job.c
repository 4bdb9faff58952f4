/* The main job from C, in one process: both roles' tables, domains and settings that arrive as
 * messages, their saved form, reading it back, tearing everything down. Of the library this file
 * sees nothing but aaadom.h, and it runs on a platform library that took the real one's place. */
#include <aaadom/aaadom.h>
#include <stdio.h>
#include <string.h>

#include "host.h"

static uint32_t role;
static int failures;

static uint32_t is_cfg_thread(void) {
    return role;
}

#define CHECK(condition)                                                    \
    do {                                                                    \
        if (!(condition)) {                                                 \
            fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
            ++failures;                                                     \
        }                                                                   \
    } while (0)

enum { WORKING = 0, CONFIG = 1 };

/* Applies a request in the configuration role, which saves it, then in the working role. */
static uint32_t apply(uint32_t operation, TLV_MSG* message) {
    char domain[DOM_NAME_SIZE] = "";
    char policy[32] = "";
    TLV_MSG* request = host_request(operation, message);
    role = CONFIG;
    uint32_t result = DOM_RestoreData(request, 1, sizeof domain, sizeof policy, domain, policy);
    TLV_MSG* forwarded = host_forward(request);
    role = WORKING;
    uint32_t followed = DOM_UpdateCfgData(forwarded, sizeof domain, sizeof policy, domain, policy);
    TLV_Destroy(forwarded);
    TLV_Destroy(request);
    return result != DOM_OK ? result : followed;
}

static void set_up(void) {
    static AAADService service;
    service.is_cfg_thread = is_cfg_thread;
    DOM_SetAAADService(&service);
    for (role = WORKING; role <= CONFIG; ++role) CHECK(DOM_DomainInfoTableInit() == DOM_OK);
    role = CONFIG;
    CHECK(DOM_IsCfgThread() == 1);
    DBM_HANDLE handle = DOM_CreateDomainDBM();
    CHECK(handle != DBM_INVALID_HANDLE);
    DOM_SetDomainDBMHandle(handle);
}

static void create_domains(void) {
    CHECK(DOM_CheckDomainName("campus") == 0);
    CHECK(apply(DOM_OP_SET, DOM_EncodeDomainName("campus")) == DOM_OK);
    CHECK(apply(DOM_OP_SET, DOM_EncodeDomainName("guests")) == DOM_OK);
    CHECK(apply(DOM_OP_SET, DOM_EncodeState("campus", 0)) == DOM_OK);
    CHECK(apply(DOM_OP_SET, DOM_EncodeSessionTime("campus", 45)) == DOM_OK);
    CHECK(apply(DOM_OP_SET, DOM_EncodeDefaultDomain("campus", 0)) == DOM_OK);
    CHECK(apply(DOM_OP_SET, DOM_EncodeDeviceID(0x01020304)) == DOM_OK);
    CHECK(host_saved_elements() == 4);
    for (role = WORKING; role <= CONFIG; ++role) {
        char name[DOM_NAME_SIZE] = "";
        uint32_t count = 0;
        CHECK(DOM_GetDomainCount(&count) == DOM_OK && count == 2);
        DOM_GetDefaultDomainName(name);
        CHECK(strcmp(name, "campus") == 0);
        CHECK(DOM_IsDomainExist("CAMPUS") != 0);
    }
    role = CONFIG;
}

static void encode_and_decode(void) {
    TLV_MSG* message = DOM_EncodeDomain("campus");
    CHECK(message != NULL);
    DomainInfo* decoded = DOM_DecodeDomain(message);
    CHECK(decoded != NULL);
    if (decoded != NULL) {
        CHECK(strcmp(decoded->name, "campus") == 0);
        CHECK(decoded->state == 0);
        CHECK(decoded->session_time == 45);
    }
    DOM_DestroyDomain(decoded);
    TLV_Destroy(message);
}

static void read_back(void) {
    char name[DOM_NAME_SIZE] = "";
    uint32_t device_id = 0;
    DBM_HANDLE handle = DOM_OpenDomainDBM();
    CHECK(handle != DBM_INVALID_HANDLE);
    DomainInfo* saved = DOM_GetDomainFromDBByName(handle, "campus");
    CHECK(saved != NULL && saved->state == 0 && saved->session_time == 45);
    DomainInfo* live = DOM_FindDomainByName("campus");
    CHECK(live != NULL);
    if (live != NULL) {
        DomainInfo* same = DOM_GetDomainFromDBByIndex(handle, live->slot);
        CHECK(same != NULL && strcmp(same->name, "campus") == 0);
        DOM_DestroyDomain(same);
    }
    DOM_DestroyDomain(saved);
    CHECK(DOM_GetDefDomainFromDB(handle, name) == DOM_OK && strcmp(name, "campus") == 0);
    CHECK(DOM_GetDeviceIDFromDB(handle, &device_id) == DOM_OK && device_id == 0x01020304);
    CHECK(DBM_Close(handle) == 0);
}

static void delete_a_domain(void) {
    CHECK(DOM_DelDomainCheck("campus") == DOM_DELCHK_DEFAULT);
    CHECK(DOM_DelDomainCheck("guests") == DOM_DELCHK_OK);
    CHECK(apply(DOM_OP_DELETE, DOM_EncodeDomainName("guests")) == DOM_OK);
    role = CONFIG;
    CHECK(DOM_GetDomainFromDBByName(g_hDomDbmHandle, "guests") == NULL);
    CHECK(DOM_FindDomainByName("guests") == NULL);
}

static void a_change_that_cannot_be_saved_fails(void) {
    TLV_MSG* request = host_request(DOM_OP_SET, DOM_EncodeSessionTime("campus", 50));
    role = CONFIG;
    host_break_next_database_call();
    CHECK(DOM_RestoreData(request, 1, 0, 0, NULL, NULL) == DOM_ERR_FAILED);
    TLV_Destroy(request);
}

static void tear_down(void) {
    CHECK(DBM_Close(g_hDomDbmHandle) == 0);
    DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
    for (role = WORKING; role <= CONFIG; ++role) CHECK(DOM_DomainInfoTableFini() == DOM_OK);
    DOM_ResetAAADService();
    CHECK(DOM_IsCfgThread() == 0);
    CHECK(host_leftovers() == 0);
}

int main(void) {
    set_up();
    create_domains();
    encode_and_decode();
    read_back();
    delete_a_domain();
    a_change_that_cannot_be_saved_fails();
    tear_down();
    if (failures == 0) puts("main job done");
    return failures == 0 ? 0 : 1;
}
