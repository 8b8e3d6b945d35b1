// The page of `zyldae view`: shows the binary glTF that the tool embedded as base64 in the
// element #model, framed by the camera, lit, and turnable with the mouse.
import * as THREE from 'three';
import { GLTFLoader } from 'three/examples/jsm/loaders/GLTFLoader.js';
import { OrbitControls } from 'three/examples/jsm/controls/OrbitControls.js';

function embeddedModel() {
  const text = document.getElementById('model').textContent.trim();
  const bytes = Uint8Array.from(atob(text), (c) => c.charCodeAt(0));
  return bytes.buffer;
}

function say(text) {
  document.getElementById('status').textContent = text;
}

// Places the camera so that the whole model fits the view, looking from the front and above.
function frame(camera, controls, object) {
  const box = new THREE.Box3().setFromObject(object);
  if (box.isEmpty()) return;
  const size = box.getSize(new THREE.Vector3()).length() || 1;
  const centre = box.getCenter(new THREE.Vector3());
  camera.near = size / 1000;
  camera.far = size * 100;
  camera.position.copy(centre).add(new THREE.Vector3(0.6, 0.45, 1).multiplyScalar(size));
  camera.updateProjectionMatrix();
  controls.target.copy(centre);
  controls.update();
}

function start() {
  const renderer = new THREE.WebGLRenderer({ antialias: true, preserveDrawingBuffer: true });
  renderer.setPixelRatio(window.devicePixelRatio);
  renderer.setSize(window.innerWidth, window.innerHeight);
  document.body.appendChild(renderer.domElement);

  const scene = new THREE.Scene();
  scene.background = new THREE.Color(0xd8dde4);
  scene.add(new THREE.HemisphereLight(0xffffff, 0x444444, 2.5));
  const sun = new THREE.DirectionalLight(0xffffff, 2);
  sun.position.set(1, 2, 3);
  scene.add(sun);

  const camera = new THREE.PerspectiveCamera(45, window.innerWidth / window.innerHeight, 0.01, 1000);
  const controls = new OrbitControls(camera, renderer.domElement);
  const render = () => renderer.render(scene, camera);
  controls.addEventListener('change', render);
  window.addEventListener('resize', () => {
    camera.aspect = window.innerWidth / window.innerHeight;
    camera.updateProjectionMatrix();
    renderer.setSize(window.innerWidth, window.innerHeight);
    render();
  });

  new GLTFLoader().parse(embeddedModel(), '', (gltf) => {
    scene.add(gltf.scene);
    frame(camera, controls, gltf.scene);
    render();
    say('');
  }, (error) => say('The model could not be shown: ' + error));
}

start();
