/* Typed values, nested messages and the operation and daemon heads on top of TLV messages. */
#ifndef PLATFORM_AAA_TLV_H
#define PLATFORM_AAA_TLV_H

#include <platform/tlv.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

uint32_t AAA_AppendUINTTlvData(TLV_MSG* msg, uint16_t type, uint32_t value);
uint32_t AAA_AppendUSHORTTlvData(TLV_MSG* msg, uint16_t type, uint16_t value);
uint32_t AAA_AppendUINT64TlvData(TLV_MSG* msg, uint16_t type, uint64_t value);
uint32_t AAA_AppendStrTlvData(TLV_MSG* msg, uint16_t type, const char* text);
uint32_t AAA_AppendMACTlvData(TLV_MSG* msg, uint16_t type, const uint8_t mac[6]);
uint32_t AAA_AppendSubTlv(TLV_MSG* msg, uint16_t type, TLV_MSG* sub);

uint32_t AAA_GetUINTTlvValue(TLV_MSG* msg, TLV_ITER* it);
uint64_t AAA_GetUINT64TlvValue(TLV_MSG* msg, TLV_ITER* it);
uint32_t AAA_GetUSHORTTlvValue(TLV_MSG* msg, TLV_ITER* it, uint16_t* value);
uint32_t AAA_GetMACTlvValue(TLV_MSG* msg, TLV_ITER* it, uint8_t mac[6]);
uint32_t AAA_GetStrTlvValue(TLV_MSG* msg, TLV_ITER* it, uint32_t capacity, char* buffer);
TLV_MSG* AAA_GetSubTlv(TLV_MSG* msg, TLV_ITER* it);

TLV_MSG* AAA_AddOpHead(uint32_t opcode, TLV_MSG* msg);
TLV_MSG* AAA_DelOpHead(TLV_MSG* msg, uint32_t* opcode);
TLV_MSG* AAA_AddAaadHead(uint32_t type, uint32_t sub_type, TLV_MSG* msg);
TLV_MSG* AAA_DelAaadHead(TLV_MSG* msg);

/** Appends one item of a structure to `msg`; 0 on success. */
typedef uint32_t (*AAA_ENCAP_FN)(uint32_t position, const void* item, TLV_MSG* msg);
/** Reads one nested message into a structure; 0 on success. */
typedef uint32_t (*AAA_DECAP_FN)(TLV_MSG* sub, void* object);
/** One run of `count` items of the same TLV type, `stride` bytes apart, from `first` on. */
typedef struct AAA_ENCAP_STEP {
    uint16_t type;
    uint32_t count;
    const void* first;
    uint32_t stride;
    AAA_ENCAP_FN encap;
} AAA_ENCAP_STEP;

void* AAA_EncapStructToTLVBuf(const AAA_ENCAP_STEP* steps, uint32_t step_count,
                              uint32_t* length_out);
uint32_t AAA_DecapSubTLVToStruct(TLV_MSG* msg, TLV_ITER* it, AAA_DECAP_FN decap, void* object);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
