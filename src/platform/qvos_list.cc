// The intrusive doubly linked list. An all-zero header is an empty list.
#include "platform/qvos.h"

extern "C" {

void ListInitNode(QVLISTNODE* node) {
  node->next = nullptr;
  node->prev = nullptr;
}

void ListAddTail(QVLIST* list, QVLISTNODE* node) {
  node->next = nullptr;
  node->prev = list->tail;
  if (list->tail != nullptr) {
    list->tail->next = node;
  } else {
    list->head = node;
  }
  list->tail = node;
  ++list->count;
}

void ListRemove(QVLIST* list, QVLISTNODE* node) {
  if (node->prev != nullptr) {
    node->prev->next = node->next;
  } else {
    list->head = node->next;
  }
  if (node->next != nullptr) {
    node->next->prev = node->prev;
  } else {
    list->tail = node->prev;
  }
  node->next = nullptr;
  node->prev = nullptr;
  --list->count;
}

QVLISTNODE* ListHead(const QVLIST* list) { return list->head; }

QVLISTNODE* ListNext(const QVLISTNODE* node) { return node->next; }

}  // extern "C"
