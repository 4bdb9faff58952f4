/* Result codes of the daemon itself. A reply of kind DOM_REPLY_KIND_RESULT carries one of these, a
 * code of results.h, or a code of the library's own operation in DOM_TLV_RESULT. */
#ifndef AAADOM_AAAD_RESULTS_H
#define AAADOM_AAAD_RESULTS_H

/** The request cannot be understood: no message, no operation head, no message code, a code or an
 *  operation that this daemon does not serve. Nothing was changed. */
#define AAAD_ERR_MALFORMED 1u
/** A read of one object: there is no such object. */
#define AAAD_ERR_NO_OBJECT 2u
/** The domain name is empty, longer than 255 characters, or holds a character that no domain name
 *  may hold. Nothing was changed. */
#define AAAD_ERR_DOMAIN_NAME 3u
/** Changes are allowed to root, to the daemon's own user and to members of the administrators'
 *  group; the peer is none of them. Nothing was changed. */
#define AAAD_ERR_DENIED 0x40020001u
/** The change was applied but could not be saved, so it was taken back in both roles. The daemon's
 *  log names the path and the reason. */
#define AAAD_ERR_NOT_SAVED 0x40020002u

#endif
