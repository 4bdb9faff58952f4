/* Global settings and per-domain options in messages. */
#ifndef AAADOM_SETTINGS_CODEC_H
#define AAADOM_SETTINGS_CODEC_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Encodes the device identifier: code 20, TLV 49. Stored as database type 7.
 * @param device_id  The identifier.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDeviceID(uint32_t device_id) AAADOM_NOEXCEPT;

/**
 * Reads the device identifier (code 20): the last TLV 49 counts.
 * @param msg  borrowed.
 * @param device_id  Untouched when there is none; null is skipped.
 * @return 0, also without the TLV; DOM_ERR_FAILED for a null message.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeDeviceID(TLV_MSG* msg, uint32_t* device_id) AAADOM_NOEXCEPT;

/**
 * Encodes the user address type of a domain: code 21, TLVs 2, 51.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param user_addr_type  The type.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeUserAddrType(const char* name, uint32_t user_addr_type) AAADOM_NOEXCEPT;

/**
 * Reads the user address type of a domain (code 21; the code itself is not looked at). Takes the
 * first TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param user_addr_type  Receives the type; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeUserAddrType(TLV_MSG* msg, uint32_t size, char* name,
                                uint32_t* user_addr_type) AAADOM_NOEXCEPT;

/**
 * Encodes the accounting dual-stack mode of a domain: code 30, TLVs 2, 76.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param mode  The mode.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeAcctDualStackMode(const char* name, uint32_t mode) AAADOM_NOEXCEPT;

/**
 * Reads the accounting dual-stack mode of a domain (code 30; the code itself is not looked at).
 * Takes the first TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param mode  Receives the mode; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeAcctDualStackMode(TLV_MSG* msg, uint32_t size, char* name,
                                     uint32_t* mode) AAADOM_NOEXCEPT;

/**
 * Encodes debug flags: code 145, TLV 377.
 * @param flag  Mask: bit 0 errors, bit 1 events.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDebugFlag(uint32_t flag) AAADOM_NOEXCEPT;

/**
 * Reads debug flags (code 145). Strict: a TLV that is neither the code nor 377 ends the reading.
 * @param msg  borrowed.
 * @param flag  Cleared first; keeps what was read before a strange TLV; null is skipped.
 * @return 0; DOM_ERR_FAILED for a strange TLV and a null message.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeDebugFlag(TLV_MSG* msg, uint32_t* flag) AAADOM_NOEXCEPT;

/**
 * Encodes the escape-recover action of a domain: code 144, TLVs 2, 375, 376, 415, 18.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param setting  First setting, carried as 32 bits.
 * @param escape_domain  Domain name, borrowed; may be empty; sent whole, readers keep 255
 *                       characters.
 * @param second_setting  Second setting, carried as 32 bits.
 * @param value_18  Carried for the front ends; the library sends 0 and never looks at it.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeAuthenEscapeRecover(const char* name, uint16_t setting,
                                       const char* escape_domain, uint16_t second_setting,
                                       uint32_t value_18) AAADOM_NOEXCEPT;

/**
 * Reads the escape-recover action of a domain (code 144; the code itself is not looked at). Takes
 * the first TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param setting  Receives the low 16 bits; 0 when missing; null is skipped.
 * @param escape_size  Capacity of `escape_domain` in bytes; a longer name is cut. 0 fails.
 * @param escape_domain  Receives the name; empty when missing; null is skipped.
 * @param second_setting  Receives the low 16 bits; 0 when missing; null is skipped.
 * @param value_18  Receives the value; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeAuthenEscapeRecover(TLV_MSG* msg, uint32_t size, char* name, uint16_t* setting,
                                       uint32_t escape_size, char* escape_domain,
                                       uint16_t* second_setting,
                                       uint32_t* value_18) AAADOM_NOEXCEPT;

/**
 * Encodes the permit domain of a domain: code 143, TLVs 2, 374, 18.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param permit_domain  Domain name, borrowed; may be empty; sent whole, readers keep 255
 *                       characters.
 * @param value_18  Carried for the front ends; the library sends 0 and never looks at it.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeAuthRdFailPermitDomain(const char* name, const char* permit_domain,
                                          uint32_t value_18) AAADOM_NOEXCEPT;

/**
 * Reads the permit domain of a domain (code 143; the code itself is not looked at). Takes the
 * first TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param permit_size  Capacity of `permit_domain` in bytes; a longer name is cut. 0 fails.
 * @param permit_domain  Receives the name; empty when missing; null is skipped.
 * @param value_18  Receives the value; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeAuthRdFailPermitDomain(TLV_MSG* msg, uint32_t size, char* name,
                                          uint32_t permit_size, char* permit_domain,
                                          uint32_t* value_18) AAADOM_NOEXCEPT;

/**
 * Encodes the authentication-fail domain of a domain: code 132, TLVs 2, 358, 18, 411.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param fail_domain  Domain name, borrowed; may be empty; sent whole, readers keep 255
 *                     characters.
 * @param value_18  Carried for the front ends; the library sends 0 and never looks at it.
 * @param kind  Carried as 32 bits.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeAuthFailDomain(const char* name, const char* fail_domain, uint32_t value_18,
                                  uint16_t kind) AAADOM_NOEXCEPT;

/**
 * Reads the authentication-fail domain of a domain (code 132; the code itself is not looked at).
 * Takes the first TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param fail_size  Capacity of `fail_domain` in bytes; a longer name is cut. 0 fails.
 * @param fail_domain  Receives the name; empty when missing; null is skipped.
 * @param value_18  Receives the value; 0 when missing; null is skipped.
 * @param kind  Receives the low 16 bits; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeAuthFailDomain(TLV_MSG* msg, uint32_t size, char* name, uint32_t fail_size,
                                  char* fail_domain, uint32_t* value_18,
                                  uint16_t* kind) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
