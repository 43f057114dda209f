-- Drives `devdef lsp` through Neovim's own LSP client, headless: the
-- diagnostics of a damaged file, hover on a package number, a jump to its
-- header list entry, the outline, diagnostics that follow an edit, a device
-- renamed, a quick fix applied and the diagnostics of its line gone, and a
-- layout 7 file whose marks the editor shows as Latin-1 characters. Writes
-- what it saw, one fact a line, to $DEVDEF_RESULT; the shell test compares
-- that with the expected lines. Uses the API of Neovim 0.7 (start_client).
local tool = assert(os.getenv('DEVDEF_TOOL'))
local work = assert(os.getenv('DEVDEF_WORK'))
local lines = {}

local function say(line)
  table.insert(lines, line)
end

local function finish(status)
  local file = assert(io.open(assert(os.getenv('DEVDEF_RESULT')), 'w'))
  file:write(table.concat(lines, '\n') .. '\n')
  file:close()
  vim.cmd(status == 0 and 'qall!' or ('cquit ' .. status))
end

-- A hard limit besides the shell's: whatever hangs, the editor quits.
vim.defer_fn(function()
  say('timeout')
  finish(3)
end, 60000)

local function diagnostics(buf)
  local found = vim.diagnostic.get(buf)
  table.sort(found, function(a, b)
    if a.lnum ~= b.lnum then return a.lnum < b.lnum end
    if a.col ~= b.col then return a.col < b.col end
    return a.message < b.message
  end)
  return found
end

local function code(d)
  return d.code or (d.user_data and d.user_data.lsp and d.user_data.lsp.code) or '?'
end

local function list_diagnostics(title, buf)
  local found = diagnostics(buf)
  say(title .. ': ' .. #found)
  for _, d in ipairs(found) do
    say(string.format('  %d:%d severity %d %s', d.lnum, d.col, d.severity, code(d)))
  end
  return #found
end

local function request(client, buf, method, params)
  local reply = client.request_sync(method, params, 5000, buf)
  assert(reply and not reply.err, method .. ' failed: ' .. vim.inspect(reply))
  return reply.result
end

local function hover(client, buf, row, col)
  vim.api.nvim_win_set_cursor(0, { row, col })
  local result = request(client, buf, 'textDocument/hover', vim.lsp.util.make_position_params())
  return result and result.contents.value:gsub('\n', ' | ') or 'nothing'
end

local function outline(symbols)
  local names = {}
  for _, symbol in ipairs(symbols) do
    local name = symbol.name
    if symbol.children and #symbol.children > 0 then name = name .. '(' .. outline(symbol.children) .. ')' end
    table.insert(names, name)
  end
  return table.concat(names, ',')
end

local ok, problem = pcall(function()
  vim.cmd('edit ' .. work .. '/damaged.def')
  local buf = vim.api.nvim_get_current_buf()
  local id = vim.lsp.start_client({ name = 'devdef', cmd = { tool, 'lsp' }, root_dir = work })
  assert(id, 'the client did not start')
  vim.lsp.buf_attach_client(buf, id)
  local client = vim.lsp.get_client_by_id(id)
  assert(vim.wait(20000, function() return #vim.diagnostic.get(buf) > 0 end, 20), 'no diagnostics came')
  local before = list_diagnostics('diagnostics of damaged.def', buf)

  -- "KVR4DEF: 4001 1 0 0 28": the package number 1, then its definition.
  say('hover on package: ' .. hover(client, buf, 13, 14))
  say('hover on keyword: ' .. hover(client, buf, 13, 2))
  vim.api.nvim_win_set_cursor(0, { 13, 14 })
  vim.lsp.buf.definition()
  assert(vim.wait(5000, function() return vim.api.nvim_win_get_cursor(0)[1] ~= 13 end, 20), 'no jump')
  local cursor = vim.api.nvim_win_get_cursor(0)
  say(string.format('definition jumps to line %d column %d: %s', cursor[1], cursor[2],
    vim.api.nvim_buf_get_lines(buf, cursor[1] - 1, cursor[1], false)[1]:sub(cursor[2] + 1, cursor[2] + 5)))

  local symbols = request(client, buf, 'textDocument/documentSymbol', { textDocument = vim.lsp.util.make_text_document_params() })
  say('outline: ' .. outline(symbols))

  -- The refused line made readable: its cascade of findings goes.
  vim.api.nvim_buf_set_lines(buf, 17, 18, false, { 'KVR5DEF: 4005 1 0 0 28 : now readable' })
  assert(vim.wait(20000, function() return #vim.diagnostic.get(buf) ~= before end, 20), 'the diagnostics stayed')
  local edited = list_diagnostics('diagnostics after the edit', buf)

  -- Rename the device through the editor's own command; the server's edit
  -- is applied to the buffer.
  vim.api.nvim_win_set_cursor(0, { 11, 3 })
  vim.lsp.buf.rename('AT27C257')
  assert(vim.wait(5000, function() return vim.api.nvim_buf_get_lines(buf, 10, 11, false)[1] ~= 'AT27C256' end, 20),
    'the rename changed nothing')
  say('rename: line 11 reads ' .. vim.api.nvim_buf_get_lines(buf, 10, 11, false)[1])
  assert(vim.wait(20000, function() return #vim.diagnostic.get(buf) == edited end, 20), 'the diagnostics changed')
  say('diagnostics after the rename: ' .. #vim.diagnostic.get(buf))

  -- The quick fix of the entry without ";" on line 3, chosen as a user
  -- chooses it from the list the editor shows.
  local chosen
  vim.ui.select = function(items, opts, on_choice)
    chosen = opts.format_item(items[1])
    on_choice(items[1], 1)
  end
  vim.api.nvim_win_set_cursor(0, { 3, 26 })
  vim.lsp.buf.code_action()
  assert(vim.wait(5000, function() return vim.api.nvim_buf_get_lines(buf, 2, 3, false)[1]:sub(-1) == ';' end, 20),
    'no code action was applied')
  say('code action: ' .. tostring(chosen))
  say('line 3 after the fix: ' .. vim.api.nvim_buf_get_lines(buf, 2, 3, false)[1])
  assert(vim.wait(20000, function() return #vim.diagnostic.get(buf) < edited end, 20), 'the diagnostics stayed')
  say('diagnostics on line 3 after the fix: ' .. #vim.diagnostic.get(buf, { lnum = 2 }))
  list_diagnostics('diagnostics after the fix', buf)

  -- Not UTF-8: the editor reads the file as Latin-1 and shows its marks.
  vim.cmd('edit ' .. work .. '/adapters_v7.def')
  local v7 = vim.api.nvim_get_current_buf()
  say('adapters_v7.def read as ' .. vim.bo[v7].fileencoding)
  vim.lsp.buf_attach_client(v7, id)
  assert(vim.wait(20000, function() return #vim.diagnostic.get(v7) > 0 end, 20), 'no diagnostics came')
  list_diagnostics('diagnostics of adapters_v7.def', v7)
  say('hover on marked keyword: ' .. hover(client, v7, 30, 0))
end)

if ok then
  finish(0)
else
  say('error: ' .. tostring(problem))
  finish(1)
end
