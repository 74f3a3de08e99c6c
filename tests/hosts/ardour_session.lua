-- Run by ardour.sh in Ardour's session engine. STEP=make: a new session with the effect, its program
-- "Second", all its parameters moved. STEP=load: that session again. STEP=plain: a new one as it
-- starts. Each prints the parameters, exports two seconds and saves. Only one export a process: a second one, or one
-- right after the start, now and then corrupts this engine's heap.
local step, folder, id = os.getenv ("STEP"), os.getenv ("SESSION"), os.getenv ("EFFECT_ID")
local rate = 48000

local function values (processor, move)
	local plugin = processor:to_insert ():plugin (0)
	local n = 0
	for i = 0, plugin:parameter_count () - 1 do
		if plugin:parameter_is_input (i) and plugin:parameter_is_control (i) then
			if move then
				local v = ARDOUR.LuaAPI.get_processor_param (processor, n)
				local _, out = plugin:get_parameter_descriptor (i, ARDOUR.ParameterDescriptor ())
				local last = out[2].upper -- above 1 of what goes in whole steps
				local moved = v > 0.5 and v - 0.35 or v + 0.35
				if last > 1 then moved = v > 0 and 0 or last end
				ARDOUR.LuaAPI.set_processor_param (processor, n, moved)
			end
			print (string.format ("VALUE %d %.6f %s", n,
				ARDOUR.LuaAPI.get_processor_param (processor, n), plugin:parameter_label (i)))
			n = n + 1
		end
	end
end

local function export ()
	local e = Session:simple_export ()
	e:set_name (step)
	e:set_folder (folder)
	e:set_range (0, 2 * rate)
	e:set_preset ("75969a1c-3133-4694-864b-a1fa50e43348") -- WAV at the session's rate
	ARDOUR.LuaAPI.usleep (300000)
	e:run_export ()
end

local function new ()
	Session = create_session (folder, "s", rate)
	local midi, stereo = ARDOUR.ChanCount (ARDOUR.DataType ("midi"), 1), ARDOUR.ChanCount (ARDOUR.DataType ("audio"), 2)
	local track = Session:new_midi_track (midi, stereo, false, ARDOUR.PluginInfo (), nil, nil, 1, "T",
		ARDOUR.PresentationInfo.max_order, ARDOUR.TrackMode.Normal, true):front ()
	local source = ARDOUR.LuaAPI.new_luaproc (Session, "Host Test Source")
	local effect = ARDOUR.LuaAPI.new_plugin (Session, id, ARDOUR.PluginType[os.getenv ("EFFECT_TYPE")], "")
	assert (not source:isnil () and not effect:isnil (), "no source or no effect")
	assert (track:add_processor_by_index (source, -1, nil, true) == 0, "the source does not fit")
	assert (track:add_processor_by_index (effect, -1, nil, true) == 0, "the effect does not fit")
	return effect
end

local function load ()
	Session = load_session (folder, "s")
	for i = 0, 30 do
		local p = Session:route_by_name ("T"):nth_plugin (i)
		if p:isnil () then break end
		if p:to_insert ():plugin (0):unique_id () == id then return p end
	end
	error ("the session came back without the effect")
end

local function work ()
	AudioEngine:set_backend ("None (Dummy)", "", ""):set_buffer_size (8192)
	local effect = step == "load" and load () or new ()
	if step == "make" then
		local plugin = effect:to_insert ():plugin (0)
		local program = plugin:preset_by_label (os.getenv ("EFFECT_PRESET"))
		assert (program and plugin:load_preset (program), "the program is not to be had")
	end
	values (effect, step == "make")
	export ()
	Session:save_state ("")
end
local good, why = pcall (work)
print (good and "GOOD" or "WRONG " .. tostring (why))
-- nothing of the session may outlive it: the collector would free it twice
Session = nil
collectgarbage ()
collectgarbage ()
close_session ()
quit ()
