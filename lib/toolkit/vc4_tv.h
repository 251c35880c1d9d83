/* vc4_tv: the scene toolkit, as plug-ins see it.
 *
 * Subjects are named by strings. A word list is a row of varargs: tokens, values, the number 1 where an item of
 * several closes, and the number 0 at the end. Values go by pointer, but where a line below says "by value".
 * Tokens are 1000 or more, so that no token can be taken for a 1 or a 0. The table of words, with what each takes,
 * stands in words.cpp; `docs/dev/words.md` is made from it.
 *
 * A call whose words don't parse reports ERR_TOOLKIT_BAD_WORD at level 4 and changes nothing.
 * One thread at a time: the scene is one, and nothing is locked.
 */
#ifndef LIB_TOOLKIT_VC4_TV_H
#define LIB_TOOLKIT_VC4_TV_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#if defined(VC4_TV_BUILD)
#define TV_API __declspec(dllexport)
#else
#define TV_API __declspec(dllimport)
#endif
#else
#define TV_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* An instance's own axes. Row 3, elements 0 to 2, of the matrix is the origin: the pivot, in the instance's space. */
typedef struct Tv_Local_Axes {
    float axes_matrix[4][4];
    float axes_scale;
    int16_t axes_flag_a;
    int16_t origin_enabled; /* not 0: the origin holds a pivot */
    int16_t axes_flag_c;
} Tv_Local_Axes;

/* Tokens and memory. A token lives as long as the library; the same word gives the same token always.
 * Blocks are the caller's, and go back by Tv_Free_Memory (null is fine). Null when there is no memory. */
TV_API int32_t Tv_Inquire_Token(const char* word);
TV_API void* Tv_Alloc_Memory(int32_t flag, int32_t clear, size_t size);
TV_API void* Tv_Realloc_Memory(int32_t flag, void* block, size_t size);
TV_API void Tv_Free_Memory(void* block);

/* Environment, paths and files. */
TV_API void Tv_Report_Error(int32_t level, const char* code, const char* function, ...); /* strings, then a null */
TV_API void Tv_Inquire_Environment(const char* word, const char** value); /* null when unknown; the toolkit's own */
TV_API void Tv_Convert_Pathname(char* path);                              /* in place, never longer than it was */
TV_API void Tv_File_Exists(const char* path, int32_t* exists);            /* 1 for a file or a directory, else 0 */
/* A handle, or null. found_path takes at most 300 bytes with its end; a longer place counts as not found. */
TV_API void* Tv_Search_And_Open_File(const char* name, const char* mode, int32_t flag, const char* search_path_word,
                                     char* found_path);
TV_API void Tv_Fclose_File(void* handle);
/* The text behind the last slash, backslash or colon, its extension kept; base takes at most 256 bytes. */
TV_API void Tv_ExtractBaseFileName(const char* path, char* base, int32_t flag);
TV_API int32_t Tv_Determine_Image_File_Type(const char* name, int32_t* type); /* the type, returned too */
TV_API int32_t Tv_RegisterClassStorage(uint32_t number, int32_t flag_a, int32_t flag_b);

/* Objects. Define, primitives and End bracket the making of one object. */
TV_API void Tv_Object_Define(const char* name, ...);
TV_API void Tv_Primitive(int32_t first_word, ...);
TV_API void Tv_Object_End(int32_t first_word, ...);
TV_API void Tv_Manipulate_IndexedPolygons(const char* name, int32_t primitive, ...);
TV_API void Tv_Surfacelink(int32_t kind, const char* name, int32_t parent_kind, const char* parent, ...);

/* The tree. */
TV_API void Tv_Add_Empty_Node(int32_t kind, const char* name, ...);
TV_API void Tv_Add_Instance(int32_t kind, const char* name, int32_t object_kind, const char* object, ...);
TV_API void Tv_Attach(int32_t kind, const char* name, int32_t parent_kind, const char* parent, ...);
TV_API void Tv_Detach(int32_t kind, const char* name, ...);
TV_API void Tv_Remove(int32_t kind, const char* name, ...);
TV_API void Tv_Instance(const char* name, ...);
TV_API void Tv_Inquire_Instance(const char* name, ...);
TV_API void Tv_Inquire_Object(const char* name, ...);
TV_API void Tv_Transform(int32_t kind, const char* name, ...);

/* Surfaces, textures and their projection. */
TV_API void Tv_Surface(const char* name, ...);
TV_API void Tv_Inquire_Surface(const char* name, ...);
TV_API void Tv_Texture(const char* name, ...);
TV_API void Tv_TxtrParam(int32_t kind, const char* name, ...);
TV_API void Tv_Inquire_TxtrParam(int32_t kind, const char* name, ...);

/* Lights, camera, backdrop, time line. */
TV_API void Tv_Light(const char* name, ...);
TV_API void Tv_Camera(const char* name, ...);
TV_API void Tv_Option(int32_t first_word, ...);
TV_API void Tv_Background(int32_t first_word, ...);
TV_API void Tv_Animation(int32_t first_word, ...);
TV_API void Tv_Inquire_Animation(int32_t first_word, ...);
TV_API void Tv_AnimController(int32_t* scratch, ...);

/* Vectors (three floats) and matrices (row vectors on the left: the translation is row 3). Outputs may be inputs. */
TV_API void Tv_Compute_Worldspace_Extents(float* upper, float* lower, int32_t flag);
TV_API void Tv_Vector_Transform(int32_t a, int32_t b, int32_t c, int32_t d, int32_t e, int32_t f, const float* in,
                                const float (*m)[4], float* out); /* out = M * in, a column vector, 3 x 3 part */
TV_API void Tv_Vector_Normalize(float* v);                        /* a vector of length 0 stays as it is */
TV_API float Tv_Vector_Direction(const float* from, const float* to, float* scratch); /* the distance */
TV_API void Tv_Vector_Scale(const float* v, float factor, float* out);
TV_API void Tv_Vector_Add(const float* a, const float* b, float* out);
TV_API void Tv_Vector_Reflect(float* v); /* v becomes -v */
TV_API void Tv_Matrix_Identity(float (*m)[4]);
TV_API void Tv_Matrix_Multiply(int32_t flag, const float (*a)[4], const float (*b)[4], float (*out)[4]); /* a * b */
TV_API void Tv_Matrix_Append_Transform(float (*m)[4], ...); /* "postmultiply", "translate", v, 0 */

#ifdef __cplusplus
}
#endif

#endif
