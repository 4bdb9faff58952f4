/* Uses nothing but the platform library. */
#include <platform/tlv.h>
#include <stdio.h>

int main(void) {
    TLV_MSG* message = TLV_Create();
    if (message == NULL || TLV_Append_UINT(message, 7, 4711) != 0) return 1;
    uint32_t value = TLV_GetUINTByIterator(message, TLV_GetIteratorByType(message, 7));
    TLV_Destroy(message);
    printf("read back: %u\n", (unsigned)value);
    return value != 4711;
}
