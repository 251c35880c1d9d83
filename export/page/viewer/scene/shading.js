// three.js's shaders differ from glTF's formulae in the fading of lamps with distance and at the edge of a cone. Here
// they are made the same, so that a page and a still of one file agree. The surroundings are only mirrored, never
// shed light themselves: what ambient light a file has stands in its lights and materials.
import { ShaderChunk } from 'three';

// [chunk, what stands there, what is put there]. A newer three.js that words one of them otherwise fails the tests.
const changes = [
  ['lights_pars_begin', '1.0 / max( pow( lightDistance, decayExponent ), 0.01 )',
    '1.0 / max( pow( lightDistance, decayExponent ), 1e-8 )'],
  ['lights_pars_begin', 'pow2( saturate( 1.0 - pow4( lightDistance / cutoffDistance ) ) )',
    'saturate( 1.0 - pow4( lightDistance / cutoffDistance ) )'],
  ['lights_pars_begin', 'return smoothstep( coneCosine, penumbraCosine, angleCosine )',
    'return pow2( saturate( ( angleCosine - coneCosine ) / max( 0.001, penumbraCosine - coneCosine ) ) )'],
  ['lights_fragment_maps', 'iblIrradiance += getIBLIrradiance( geometryNormal );', ''],
];

export function useGltfFormulae() {
  for (const [chunk, from, to] of changes) {
    if (!ShaderChunk[chunk].includes(from)) throw new Error(`three.js words ${chunk} otherwise: ${from}`);
    ShaderChunk[chunk] = ShaderChunk[chunk].replace(from, () => to);
  }
}
