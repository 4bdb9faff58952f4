/* Typed values, nested messages and the operation and daemon heads on top of TLV messages.
 *
 * Numbers are carried little-endian in exactly their width, texts with their terminator, a nested
 * message as its complete image. Result codes: 0 done, 0x40010001 failure. A message may be used
 * by one thread at a time; different messages, a nested message and its parent included, are
 * independent of each other. No call takes a lock. */
#ifndef PLATFORM_AAA_TLV_H
#define PLATFORM_AAA_TLV_H

#include <platform/api.h>
#include <platform/tlv.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Append one TLV at the end of `msg`; iterators of `msg` end.
 * @param msg    borrowed.
 * @param type   any 16-bit number, also one that `msg` has.
 * @param value  any number; the TLV has 4, 2 or 8 bytes.
 * @param text   borrowed; goes in with its terminator, an empty text is a TLV of one byte.
 * @param mac    borrowed; 6 bytes.
 * @return 0; 0x40010001, and `msg` unchanged, when an argument is null, the message would pass
 *         4 GiB or memory is short.
 * @thread any.
 */
uint32_t AAA_AppendUINTTlvData(TLV_MSG* msg, uint16_t type, uint32_t value) PLATFORM_NOEXCEPT;
uint32_t AAA_AppendUSHORTTlvData(TLV_MSG* msg, uint16_t type, uint16_t value) PLATFORM_NOEXCEPT;
uint32_t AAA_AppendUINT64TlvData(TLV_MSG* msg, uint16_t type, uint64_t value) PLATFORM_NOEXCEPT;
uint32_t AAA_AppendStrTlvData(TLV_MSG* msg, uint16_t type, const char* text) PLATFORM_NOEXCEPT;
uint32_t AAA_AppendMACTlvData(TLV_MSG* msg, uint16_t type, const uint8_t mac[6]) PLATFORM_NOEXCEPT;

/**
 * Appends a copy of a message as one TLV.
 * @param msg   borrowed; iterators of `msg` end.
 * @param type  any 16-bit number, also one that `msg` has.
 * @param sub   borrowed; may be empty, may be `msg` itself.
 * @return 0; 0x40010001, and `msg` unchanged, when an argument is null, the message would pass
 *         4 GiB or memory is short.
 * @thread any.
 */
uint32_t AAA_AppendSubTlv(TLV_MSG* msg, uint16_t type, TLV_MSG* sub) PLATFORM_NOEXCEPT;

/**
 * The number that a TLV carries.
 * @param msg  borrowed.
 * @param it   owned by `msg`.
 * @return the value of the first 4 (8) bytes; 0 when the TLV is shorter, `it` is null or lies
 *         outside `msg`, or `msg` is null.
 * @thread any.
 */
uint32_t AAA_GetUINTTlvValue(TLV_MSG* msg, TLV_ITER* it) PLATFORM_NOEXCEPT;
uint64_t AAA_GetUINT64TlvValue(TLV_MSG* msg, TLV_ITER* it) PLATFORM_NOEXCEPT;

/**
 * Read the first 2 (6) bytes of a TLV.
 * @param msg    borrowed.
 * @param it     owned by `msg`.
 * @param value  receives the number, unchanged on failure.
 * @param mac    receives 6 bytes, unchanged on failure.
 * @return 0; 0x40010001 when the TLV is shorter, `it` is null or lies outside `msg`, or another
 *         argument is null.
 * @thread any.
 */
uint32_t AAA_GetUSHORTTlvValue(TLV_MSG* msg, TLV_ITER* it, uint16_t* value) PLATFORM_NOEXCEPT;
uint32_t AAA_GetMACTlvValue(TLV_MSG* msg, TLV_ITER* it, uint8_t mac[6]) PLATFORM_NOEXCEPT;

/**
 * Copies the text of a TLV: up to the first NUL of the value or the value's end.
 * @param msg       borrowed.
 * @param it        owned by `msg`.
 * @param capacity  size of `buffer` in bytes with the terminator; a longer text is cut to
 *                  `capacity` - 1 bytes, which is no failure.
 * @param buffer    receives the text, always terminated; unchanged on failure.
 * @return 0; 0x40010001 when `it` is null or lies outside `msg`, `capacity` is 0, or `msg` or
 *         `buffer` is null.
 * @thread any.
 */
uint32_t AAA_GetStrTlvValue(TLV_MSG* msg, TLV_ITER* it, uint32_t capacity,
                            char* buffer) PLATFORM_NOEXCEPT;

/**
 * Takes the nested message of a TLV, without copying: it shares the bytes of `msg` until one of the
 * two is changed. Nobody notices, and either may be destroyed first, on any thread.
 * @param msg  borrowed.
 * @param it   owned by `msg`.
 * @return returned, destroy with TLV_Destroy; null when the value is not exactly one well-formed
 *         image, `it` is null or lies outside `msg`, `msg` is null, or memory is short.
 * @thread any.
 */
TLV_MSG* AAA_GetSubTlv(TLV_MSG* msg, TLV_ITER* it) PLATFORM_NOEXCEPT;

/**
 * Wraps a request for the configuration thread with its operation.
 * The new message is TLV 0xFF01 UINT32 `opcode`, TLV 0xFF02 nested `msg`.
 * @param opcode  0 set or create, 1 delete, 2 get; passed unchanged.
 * @param msg     borrowed.
 * @return returned, destroy with TLV_Destroy; null when `msg` is null or memory is short.
 * @thread any.
 */
TLV_MSG* AAA_AddOpHead(uint32_t opcode, TLV_MSG* msg) PLATFORM_NOEXCEPT;

/**
 * Takes the message out of its operation head.
 * @param msg     borrowed.
 * @param opcode  receives the operation, unchanged on failure; may be null.
 * @return returned, destroy with TLV_Destroy; null when the first two TLVs of `msg` are not the
 *         head's, its parts are malformed, `msg` is null, or memory is short.
 * @thread any.
 */
TLV_MSG* AAA_DelOpHead(TLV_MSG* msg, uint32_t* opcode) PLATFORM_NOEXCEPT;

/**
 * Wraps a message, which keeps its operation head, for another thread of the daemon.
 * The new message is TLV 0xFF03 UINT32 `type`, TLV 0xFF04 UINT32 `sub_type`, TLV 0xFF05 nested
 * `msg`.
 * @param type      number for the receiver, passed unchanged.
 * @param sub_type  number for the receiver, passed unchanged.
 * @param msg       borrowed.
 * @return returned, destroy with TLV_Destroy; null when `msg` is null or memory is short.
 * @thread any.
 */
TLV_MSG* AAA_AddAaadHead(uint32_t type, uint32_t sub_type, TLV_MSG* msg) PLATFORM_NOEXCEPT;

/**
 * Takes the message, still with its operation head, out of its daemon head.
 * @param msg  borrowed.
 * @return returned, destroy with TLV_Destroy; null when the first three TLVs of `msg` are not the
 *         head's, its parts are malformed, `msg` is null, or memory is short.
 * @thread any.
 */
TLV_MSG* AAA_DelAaadHead(TLV_MSG* msg) PLATFORM_NOEXCEPT;

/** Appends one item of a structure to `msg`; 0 on success. */
typedef uint32_t (*AAA_ENCAP_FN)(uint32_t position, const void* item, TLV_MSG* msg);
/** Reads one nested message into a structure; 0 on success. */
typedef uint32_t (*AAA_DECAP_FN)(TLV_MSG* sub, void* object);
/** One run of `count` TLVs of the same type, from items `stride` bytes apart from `first` on. With
 *  `encap` each TLV is a nested message that `encap` fills from its item, given the item's
 *  position 0, 1, ...; with a null `encap` each item is a uint32_t in host order and its TLV the
 *  same number in network byte order. */
typedef struct AAA_ENCAP_STEP {
    uint16_t type;
    uint32_t count;
    const void* first;
    uint32_t stride;
    AAA_ENCAP_FN encap;
} AAA_ENCAP_STEP;

/**
 * Builds the image of a message from the runs of a structure, in their order.
 * @param steps       borrowed; may be null when `step_count` is 0, which gives an empty message.
 * @param step_count  number of runs in `steps`.
 * @param length_out  receives the image's length in bytes, 0 on failure; may be null.
 * @return returned, destroy with free; open it with TLV_CreateReceiveMsg form 2. Null when an
 *         `encap` answers non-zero, a run with items has a null `first`, the message would pass
 *         4 GiB, or memory is short.
 * @thread any; `encap` is called without a lock.
 */
void* AAA_EncapStructToTLVBuf(const AAA_ENCAP_STEP* steps, uint32_t step_count,
                              uint32_t* length_out) PLATFORM_NOEXCEPT;

/**
 * Reads the nested message of a TLV into a structure.
 * @param msg     borrowed.
 * @param it      owned by `msg`.
 * @param decap   reads the nested message, which it borrows.
 * @param object  borrowed; given to `decap` unchanged, so it may be null if `decap` allows it.
 * @return the result of `decap`, unchanged; 0x40010001 when the TLV carries no nested message or
 *         `decap` is null.
 * @thread any; `decap` is called without a lock.
 */
uint32_t AAA_DecapSubTLVToStruct(TLV_MSG* msg, TLV_ITER* it, AAA_DECAP_FN decap,
                                 void* object) PLATFORM_NOEXCEPT;

/** One member of a structure and the TLV that carries it. A table of them, in the order in which
 *  the TLVs are sent, describes a structure to the calls below, which handle all of it at once. */
typedef struct AAA_FIELD {
    uint16_t type;   /* of the TLV */
    uint16_t kind;   /* AAA_FIELD_... */
    uint16_t offset; /* of the member in its structure, in bytes */
    uint16_t size;   /* of texts and blocks, in bytes; at least 1 for texts; 0 of the others */
} AAA_FIELD;

enum {
    AAA_FIELD_WORD = 0,     /* uint32_t, carried as UINT32 */
    AAA_FIELD_HALF = 1,     /* uint16_t, carried as UINT32, narrowed when read */
    AAA_FIELD_TEXT = 2,     /* char[size]; sent up to its NUL or, without one, all of it with a
                               terminator; read as AAA_GetStrTlvValue does */
    AAA_FIELD_BLOCK = 3,    /* `size` raw bytes; read as TLV_GetValueByIterator does */
    AAA_FIELD_POSITION = 4, /* no member: the structure's position in its array, as UINT32 */
    AAA_FIELD_OTHER = 5     /* no member, for reading only: a TLV that `other` gets. Naming it where
                               it is expected saves the search for a field of its type */
};

/**
 * Appends one TLV for each field, in the order of the table: the same TLVs as the single appends
 * give.
 * @param msg     borrowed; its iterators end.
 * @param fields  borrowed; may be null when `count` is 0. A position is sent as 0.
 * @param count   number of fields.
 * @param record  borrowed; the structure, which must not lie inside `msg`.
 * @return 0; 0x40010001 when an argument is null, the message would pass 4 GiB or memory is short:
 *         `msg` may then have some of the fields, its former TLVs are unchanged.
 * @thread any.
 */
uint32_t AAA_AppendFields(TLV_MSG* msg, const AAA_FIELD* fields, uint32_t count,
                          const void* record) PLATFORM_NOEXCEPT;

/**
 * Appends one nested message for each structure of an array, all with the same type and table.
 * @param msg      borrowed; its iterators end.
 * @param type     any 16-bit number.
 * @param fields   borrowed; may be null when `count` is 0, which gives empty nested messages.
 * @param count    number of fields.
 * @param first    borrowed; the first structure, position 0; may be null when `records` is 0. None
 *                 may lie inside `msg`.
 * @param stride   distance between two structures, in bytes.
 * @param records  number of structures.
 * @return 0; 0x40010001 when an argument is null, the message would pass 4 GiB or memory is short:
 *         `msg` then has the structures before the one that failed, each complete.
 * @thread any.
 */
uint32_t AAA_AppendRecords(TLV_MSG* msg, uint16_t type, const AAA_FIELD* fields, uint32_t count,
                           const void* first, uint32_t stride, uint32_t records) PLATFORM_NOEXCEPT;

/**
 * Open and close a nested message in place: what is appended to `msg` between the two calls becomes
 * the value of one TLV, without a message of its own and without a copy. Pairs may lie inside each
 * other; whoever does not call AAA_EndSubTlv, because an append failed, destroys `msg`. Between the
 * two calls nothing is deleted from `msg` and no nested message is taken out of it.
 * @param msg   borrowed; its iterators end.
 * @param type  any 16-bit number, also one that `msg` has.
 * @param mark  receives what AAA_EndSubTlv needs, unchanged on failure; as an argument, what
 *              AAA_BeginSubTlv stored there for `msg`.
 * @return 0; 0x40010001, and `msg` unchanged, when an argument is null, the message would pass
 *         4 GiB, memory is short, or `mark` is none of `msg`.
 * @thread any.
 */
uint32_t AAA_BeginSubTlv(TLV_MSG* msg, uint16_t type, uint32_t* mark) PLATFORM_NOEXCEPT;
uint32_t AAA_EndSubTlv(TLV_MSG* msg, uint32_t mark) PLATFORM_NOEXCEPT;

/** Gets a TLV that no field describes, or one of kind AAA_FIELD_OTHER. `msg` and `it` belong
 * together for the reading calls, valid until the function returns; it must not change or destroy
 * `msg`. 0 or a failure. */
typedef uint32_t (*AAA_OTHER_FN)(void* context, uint16_t type, TLV_MSG* msg, TLV_ITER* it);

/**
 * Read every TLV of a message, or of the nested message in a TLV, into a structure. Members whose
 * TLV is missing keep their value; the last of several TLVs of a type counts. Behind the
 * terminator of a text its member is undefined.
 * @param msg       borrowed.
 * @param it        owned by `msg`; its TLV carries the nested message, which is read in place.
 * @param fields    borrowed; may be null when `count` is 0. The TLVs may come in any order, in that
 *                  of the table they are found fastest.
 * @param count     number of fields.
 * @param record    borrowed; the structure, which must not lie inside `msg`.
 * @param position  receives the position, unchanged when there is none; may be null.
 * @param other     called for each TLV of another type or of an AAA_FIELD_OTHER, in their order;
 * null skips them.
 * @param context   given to `other` unchanged.
 * @return 0; 0x40010001 when a needed argument is null, `it` lies outside `msg`, its value is not
 *         exactly one well-formed image, or memory is short: `record` is then undefined and `other`
 *         may have been called. Else the results of `other`, combined bit by bit.
 * @thread any; `other` is called without a lock.
 */
uint32_t AAA_GetFields(TLV_MSG* msg, const AAA_FIELD* fields, uint32_t count, void* record,
                       AAA_OTHER_FN other, void* context) PLATFORM_NOEXCEPT;
uint32_t AAA_GetSubFields(TLV_MSG* msg, TLV_ITER* it, const AAA_FIELD* fields, uint32_t count,
                          void* record, uint32_t* position, AAA_OTHER_FN other,
                          void* context) PLATFORM_NOEXCEPT;

/**
 * Counts the TLVs of a type, from one TLV to the end of the message.
 * @param msg   borrowed; nested messages are not looked into.
 * @param it    owned by `msg`; the first TLV that counts.
 * @param type  any 16-bit number.
 * @return how many; 0 when `msg` or `it` is null or `it` lies outside `msg`.
 * @thread any.
 */
uint32_t AAA_CountTlvs(TLV_MSG* msg, TLV_ITER* it, uint16_t type) PLATFORM_NOEXCEPT;

/** The array whose structures a message carries as nested messages of one type, each with its
 *  position. */
typedef struct AAA_RECORDS {
    uint16_t type;           /* of the TLVs */
    uint16_t places;         /* length of the array; 0: there is one structure, and each TLV of the
                                type replaces it, whatever position it has */
    uint16_t size;           /* of a structure, in bytes */
    uint16_t count;          /* number of fields */
    const AAA_FIELD* fields; /* of a structure */
    void* first;             /* the first structure */
} AAA_RECORDS;

/**
 * Reads every TLV of a message, or of the nested message in a TLV, into a structure and the arrays
 * that belong to it. The structure is read as AAA_GetFields does. A structure of an array has 0 in
 * the members whose TLV is missing; one without a position goes to position 0, one whose position
 * is outside its array is read and not stored; the last of several with a position counts. TLVs of
 * other types are skipped.
 * @param msg      borrowed.
 * @param it       owned by `msg`; its TLV carries the nested message, which is read in place. Null
 *                 reads `msg` itself.
 * @param fields   borrowed; may be null when `count` is 0.
 * @param count    number of fields.
 * @param record   borrowed; the structure, which must not lie inside `msg`.
 * @param arrays   borrowed, with the fields that they name; all bytes of their structures are 0
 *                 when this is called, and none lies inside `msg`. No type is that of a field or of
 *                 another array.
 * @param array_count  number of arrays, at most 4.
 * @return 0; 0x40010001 when a needed argument is null, there are more arrays, `it` lies outside
 *         `msg`, its value or a TLV of an array's type is not exactly one well-formed image, or
 *         memory is short: `record` and the arrays are then undefined.
 * @thread any.
 */
uint32_t AAA_GetRecords(TLV_MSG* msg, TLV_ITER* it, const AAA_FIELD* fields, uint32_t count,
                        void* record, const AAA_RECORDS* arrays,
                        uint32_t array_count) PLATFORM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
