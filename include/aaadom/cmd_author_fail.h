/* Command lines whose authorization failed: the latest ten, and their messages (code 92). */
#ifndef AAADOM_CMD_AUTHOR_FAIL_H
#define AAADOM_CMD_AUTHOR_FAIL_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* How many failures the list of the process keeps. */
enum { CMD_AUTHOR_FAIL_CAPACITY = 10 };

/** One failure. The library carries the fields and does not look into them: the daemon puts the
 *  command line into the first text. The TLV type of a field stands beside it. */
typedef struct CmdAuthorFailItem {
    char first_text[513];  /* 220 */
    char second_text[256]; /* 221 */
    char third_text[256];  /* 222 */
    uint64_t number64;     /* 223 */
    uint32_t number32;     /* 224 */
} CmdAuthorFailItem;

/** A failure in a list. Nodes are calloc'ed, because whoever takes one out frees it with
 *  DOM_FreeCmdAuthorFailNode. */
typedef struct CmdAuthorFailNode {
    struct CmdAuthorFailNode* next;
    struct CmdAuthorFailNode* prev;
    CmdAuthorFailItem item;
} CmdAuthorFailNode;

/** Ends a list on both sides: `next` is the oldest node, `prev` the newest, both are the head
 *  itself (as a node's address) in an empty list. It has the links of a node and no item. A head of
 *  zeros is an empty list, too. */
typedef struct CmdAuthorFailHead {
    CmdAuthorFailNode* next;
    CmdAuthorFailNode* prev;
} CmdAuthorFailHead;

/** A list of failures: that of the process, or that of a reader of replies. */
typedef struct CmdAuthorFailRec {
    uint32_t count;
    CmdAuthorFailHead head;
} CmdAuthorFailRec;

#if UINTPTR_MAX == UINT64_MAX
AAADOM_ASSERT_LAYOUT(offsetof(CmdAuthorFailItem, second_text) == 513);
AAADOM_ASSERT_LAYOUT(offsetof(CmdAuthorFailItem, third_text) == 769);
AAADOM_ASSERT_LAYOUT(offsetof(CmdAuthorFailItem, number64) == 1032);
AAADOM_ASSERT_LAYOUT(offsetof(CmdAuthorFailItem, number32) == 1040);
AAADOM_ASSERT_LAYOUT(sizeof(CmdAuthorFailItem) == 1048);
AAADOM_ASSERT_LAYOUT(offsetof(CmdAuthorFailNode, item) == 16);
AAADOM_ASSERT_LAYOUT(sizeof(CmdAuthorFailNode) == 1064);
AAADOM_ASSERT_LAYOUT(offsetof(CmdAuthorFailRec, head) == 8);
AAADOM_ASSERT_LAYOUT(sizeof(CmdAuthorFailRec) == 24);
#endif

/**
 * The list of the process, oldest failure first.
 * @return owned by the library, valid until the process ends; its nodes until the next
 *         DOM_AddCmdAuthorFailNodeToList, DOM_ProcCmdAuthorFail or DOM_CmdAuthorFailRecFini.
 * @thread callers of everything that reads or changes the list take turns; takes no lock.
 */
CmdAuthorFailRec* DOM_GetGlbCmdAuthorFailRec(void) AAADOM_NOEXCEPT;

/**
 * Makes the list of the process empty and its count 0. Nodes that it has are not freed: the call is
 * the first of a process, or follows DOM_CmdAuthorFailRecFini.
 * @return owned by the library, valid until the process ends: the list.
 * @thread as DOM_GetGlbCmdAuthorFailRec.
 */
CmdAuthorFailRec* DOM_CmdAuthorFailRecInit(void) AAADOM_NOEXCEPT;

/**
 * Frees every node of the list of the process, newest first. The count stays: readers that show how
 * many failures there were still have it, and only DOM_CmdAuthorFailRecInit sets it to 0. Adding
 * without an init in between goes on counting from there, and so evicts early.
 * @thread as DOM_GetGlbCmdAuthorFailRec.
 */
void DOM_CmdAuthorFailRecFini(void) AAADOM_NOEXCEPT;

/**
 * Frees a node with plain free().
 * @param node  consumed always; in no list. Null is ignored.
 * @thread any; takes no lock.
 */
void DOM_FreeCmdAuthorFailNode(CmdAuthorFailNode* node) AAADOM_NOEXCEPT;

/**
 * Adds a failure to the list of the process as the newest. The count goes up to 10; from then on
 * the oldest node, if there is one, is freed first.
 * @param node  consumed always: calloc'ed, owned by the list. Null is ignored.
 * @thread as DOM_GetGlbCmdAuthorFailRec.
 */
void DOM_AddCmdAuthorFailNodeToList(CmdAuthorFailNode* node) AAADOM_NOEXCEPT;

/**
 * Adds the failure that a message reports in its top-level TLVs 220 to 224 to the list of the
 * process. The code is not looked at, so a message without any of these TLVs adds an empty failure;
 * dispatchers hand over only code 92. Undecodable messages and lack of memory are dropped silently.
 * @param msg  borrowed; null is ignored.
 * @thread as DOM_GetGlbCmdAuthorFailRec.
 */
void DOM_ProcCmdAuthorFail(TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Appends a failure to a message as one nested message: TLVs 220, 221, 222, 223, 224.
 * @param parent  borrowed; unchanged on failure.
 * @param type    the TLV type of the nested message; 219 in replies.
 * @param item    borrowed; texts are sent up to their terminator, whole when they have none.
 * @return 0; DOM_ERR_FAILED for a null argument and when memory is short.
 * @thread any; takes no lock.
 */
uint32_t DOM_Rec_EncodeCmdAuthorFailItem(TLV_MSG* parent, uint16_t type,
                                         const CmdAuthorFailItem* item) AAADOM_NOEXCEPT;

/**
 * Encodes the end of a list: TLV 225 alone, without a code.
 * @param value  the caller's; receivers look at the TLV only.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_Rec_EncodeCmdAuthorFailEndMsg(uint32_t value) AAADOM_NOEXCEPT;

/**
 * Appends the message code: TLV 0 = 92.
 * @param msg  borrowed; unchanged on failure.
 * @return 0; DOM_ERR_FAILED for null and when memory is short.
 * @thread any; takes no lock.
 */
uint32_t DOM_Rec_tlv_EncodeCmdAuthorFailMsg(TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Reads a failure from the TLVs 220 to 224 of a message; other TLVs are skipped and of two of one
 * type the last counts.
 * @param msg   borrowed.
 * @param item  texts are cut to 512, 255 and 255 characters; a field without a TLV stays as it was,
 *              a number whose TLV is too short becomes 0.
 * @return 0, also for a message without TLVs; DOM_ERR_FAILED for a null argument; otherwise the
 * text reads' results combined. Numbers never fail.
 * @thread any; takes no lock.
 */
uint32_t DOM_Rec_DecodeCmdAuthorFailItem(TLV_MSG* msg, CmdAuthorFailItem* item) AAADOM_NOEXCEPT;

/**
 * Reads a reply: every TLV 219 is a failure, TLV 225 the end of the list, others are skipped.
 * @param msg   borrowed.
 * @param list  the caller's, zeroed or with nodes: each failure is put directly behind the head, so
 *              the list ends in the reverse order of the message. Its nodes are the caller's, free
 *              each with DOM_FreeCmdAuthorFailNode. The count grows with every TLV 219, also with
 *              one that could not be decoded or stored: it is how many the sender had.
 * @return 0, also for a message without TLVs; DOM_ERR_FAILED for a null argument and for a TLV 219
 *         that cannot be decoded; DOM_ERR_NOT_FOUND at the end of the list, in place of what was
 *         gathered before it; failures behind the end are combined with it. Lack of memory for a
 *         node is no failure.
 * @thread any, callers with one list take turns; takes no lock.
 */
uint32_t DOM_Rec_tlv_DecodeCmdAuthorFailMsg(TLV_MSG* msg, CmdAuthorFailRec* list) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
